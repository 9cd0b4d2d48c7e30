// Faults on demand.

import assert from 'node:assert/strict';
import { test } from 'node:test';
import { makeSigner, makeTransfer, send, startNet } from './helpers.mjs';

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
    const other = () => outcome(post('/mainnet', { ...health, method: 'getSlot' }));
    const fine = await ask();
    const otherwise = await other();
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
        [{ kind: 'redirect', location: '/explorer' }, (seen) => assert.equal(seen.status, 405, 'the same POST, elsewhere')],
        [{ kind: 'body', body: '{"result":null}' }, (seen) => assert.equal(seen.text, '{"result":null}')],
    ];
    for (const [fault, check] of cases) {
        assert.equal((await control('fault', { match: 'getHealth', count: 2, ...fault })).status, 200);
        check(await ask());
        assert.deepEqual(await other(), otherwise, 'another method');
        check(await ask());
        assert.deepEqual(await ask(), fine, `${fault.kind} is used up`);
    }
    assert.equal((await control('fault', { match: '*', kind: 'explode' })).status, 400);
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
