// Faults on demand, the log of what was asked, and the program that runs it all.

import assert from 'node:assert/strict';
import { spawn } from 'node:child_process';
import { once } from 'node:events';
import { test } from 'node:test';
import { fileURLToPath } from 'node:url';
import { makeSigner, makeTransfer, send, startNet } from './helpers.mjs';

const PRICE = '/coinbase/v2/prices/SOL-USD/spot';
const health = { jsonrpc: '2.0', id: 4, method: 'getHealth' };

/** What a client sees of a request: the status and the body, or that the connection broke. */
async function outcome(request) {
    try {
        const response = await request;
        return { status: response.status, text: await response.text() };
    } catch (error) {
        assert.notEqual(error.name, 'TimeoutError');
        return 'broken';
    }
}

test('each fault does what it says as often as ordered', async (t) => {
    const { post, control } = await startNet(t);
    const ask = () => outcome(post('/mainnet', health));
    const fine = await ask();
    const broken = (seen) => assert.equal(seen, 'broken');
    const cases = [
        [{ kind: 'drop' }, broken],
        [{ kind: 'drop-after' }, broken],
        [{ kind: 'truncated' }, broken],
        [{ kind: 'status', status: 500, keepBody: true }, (seen) => assert.deepEqual(seen, { ...fine, status: 500 })],
        [{ kind: 'status', status: 429, body: '{}' }, (seen) => assert.deepEqual(seen, { status: 429, text: '{}' })],
        [{ kind: 'wrong-json' }, (seen) => assert.equal(JSON.parse(seen.text).result, undefined)],
        [{ kind: 'not-json' }, (seen) => assert.throws(() => JSON.parse(seen.text))],
        [{ kind: 'oversize' }, (seen) => assert.ok(seen.text.length > 4 * 1024 * 1024)],
        [{ kind: 'rpc-error', code: -32005, message: 'behind' }, (seen) => assert.equal(JSON.parse(seen.text).error.code, -32005)],
        [{ kind: 'body', body: '{"result":null}' }, (seen) => assert.equal(seen.text, '{"result":null}')],
    ];
    for (const [fault, check] of cases) {
        assert.equal((await control('fault', { match: 'getHealth', count: 2, ...fault })).status, 200);
        check(await ask());
        check(await ask());
        assert.deepEqual(await ask(), fine, `${fault.kind} is used up`);
    }
    assert.equal((await control('fault', { match: '*', kind: 'explode' })).status, 400);
});

test('a fault hits what it names and nothing else, and the log tells of it', async (t) => {
    const { post, get, control } = await startNet(t);
    const requests = {
        health: () => post('/mainnet', health),
        devnetHealth: () => post('/devnet', health),
        proxiedHealth: () => post('/api/rpc', health),
        price: () => get(PRICE),
    };
    const cases = [
        [{ match: 'getHealth' }, [true, true, true, false]],
        [{ match: 'getHealth', cluster: 'devnet' }, [false, true, false, false]],
        [{ match: 'proxy' }, [false, false, true, false]],
        [{ match: 'coinbase' }, [false, false, false, true]],
        [{ match: '*' }, [true, true, true, true]],
    ];
    for (const [fault, expected] of cases) {
        await control('fault', { kind: 'status', status: 503, ...fault });
        await control('clear-log');
        for (const ask of Object.values(requests)) {
            await ask();
        }
        const { entries } = await (await get('/control/log')).json();
        assert.deepEqual(entries.map(({ status }) => status === 503), expected, JSON.stringify(fault));
        await control('clear-faults');
    }
});

test('a dropped request is not carried out, one dropped after submission is', async (t) => {
    const { rpc, control, lamports } = await startNet(t);
    const [from, to] = await Promise.all([makeSigner(), makeSigner()]);
    await control('balance', { cluster: 'mainnet', address: from.address, lamports: 10_000_000_000 });
    const { blockhash } = (await rpc('getLatestBlockhash', [])).result.value;
    const { bytes } = await makeTransfer({ from, to: to.address, amount: 2_000_000_000, blockhash });
    for (const [kind, moved] of [['drop', 0], ['drop-after', 2_000_000_000]]) {
        await control('fault', { match: 'sendTransaction', kind, count: 1 });
        await assert.rejects(send(rpc, bytes), kind);
        assert.equal(await lamports(to.address), moved, kind);
    }
});

test('the program starts as told and ends with the process it follows', async (t) => {
    const { address } = await makeSigner();
    const followed = spawn(process.execPath, ['-e', 'setInterval(() => {}, 1000)'], { stdio: 'ignore' });
    const server = fileURLToPath(new URL('../../tools/localnet/server.mjs', import.meta.url));
    const child = spawn(process.execPath, [server, '--fund', `devnet:${address}=1.5`, '--price', '20',
        '--parent', String(followed.pid)], { stdio: ['ignore', 'pipe', 'inherit'] });
    t.after(() => [followed, child].forEach((each) => each.kill('SIGKILL')));
    const bound = { signal: AbortSignal.timeout(20_000) };
    const ended = once(child, 'close', bound);
    const [line] = await once(child.stdout, 'data', bound);
    const { url } = JSON.parse(line);
    const state = await (await fetch(`${url}/control/state?address=${address}`)).json();
    assert.deepEqual([state.clusters.mainnet.sol, state.clusters.devnet.sol], ['0', '1.5']);
    assert.equal((await (await fetch(url + PRICE)).json()).data.amount, '20');
    followed.kill('SIGKILL');
    assert.deepEqual(await ended, [0, null]);
});
