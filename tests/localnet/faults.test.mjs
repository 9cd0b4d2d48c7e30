import assert from 'node:assert/strict';
import { test } from 'node:test';
import { makeSigner, makeTransfer, send, startNet } from './helpers.mjs';

const PRICE = '/coingecko/api/v3/simple/price?ids=solana&vs_currencies=usd';
const health = { jsonrpc: '2.0', id: 4, method: 'getHealth' };

/** What a client sees of a request: the status and the body, or that the connection broke. */
async function outcome(request) {
    try {
        const response = await request;
        return { status: response.status, type: response.headers.get('content-type'), text: await response.text() };
    } catch (error) {
        assert.notEqual(error.name, 'TimeoutError');
        return 'broken';
    }
}

test('each kind does what it says as often as ordered', async (t) => {
    const { post, control } = await startNet(t);
    const ask = () => outcome(post('/mainnet', health));
    const fine = await ask();
    assert.equal(JSON.parse(fine.text).result, 'ok');

    const cases = [
        [{ kind: 'drop' }, (seen) => assert.equal(seen, 'broken')],
        [{ kind: 'drop-after' }, (seen) => assert.equal(seen, 'broken')],
        [{ kind: 'truncated' }, (seen) => assert.equal(seen, 'broken')],
        [{ kind: 'status', status: 503 }, (seen) => {
            assert.equal(seen.status, 503);
            assert.throws(() => JSON.parse(seen.text));
        }],
        [{ kind: 'status', status: 500, keepBody: true }, (seen) => assert.deepEqual(seen, { ...fine, status: 500 })],
        [{ kind: 'status', status: 429, body: '{}', contentType: 'application/json' },
            (seen) => assert.deepEqual(seen, { status: 429, type: 'application/json', text: '{}' })],
        [{ kind: 'wrong-json' }, (seen) => assert.equal(JSON.parse(seen.text).result, undefined)],
        [{ kind: 'not-json' }, (seen) => {
            assert.equal(seen.status, 200);
            assert.throws(() => JSON.parse(seen.text));
        }],
        [{ kind: 'oversize' }, (seen) => {
            assert.ok(seen.text.length > 4 * 1024 * 1024);
            assert.equal(JSON.parse(seen.text).result, 'ok');
        }],
        [{ kind: 'rpc-error', code: -32005, message: 'Node is behind', data: { numSlotsBehind: 42 } },
            (seen) => assert.deepEqual(JSON.parse(seen.text), {
                jsonrpc: '2.0', id: 4, error: { code: -32005, message: 'Node is behind', data: { numSlotsBehind: 42 } },
            })],
        [{ kind: 'body', body: '{"jsonrpc":"2.0","id":4,"result":null}' },
            (seen) => assert.equal(seen.text, '{"jsonrpc":"2.0","id":4,"result":null}')],
        [{ kind: 'body', bodyBase64: Buffer.from('ab').toString('base64'), status: 201 },
            (seen) => assert.deepEqual([seen.status, seen.text], [201, 'ab'])],
    ];
    for (const [fault, check] of cases) {
        assert.equal((await control('fault', { match: 'getHealth', count: 2, ...fault })).status, 200);
        check(await ask());
        check(await ask());
        assert.deepEqual(await ask(), fine, `${fault.kind} is used up`);
    }
});

test('a fault hits what it names and nothing else', async (t) => {
    const { post, get, control } = await startNet(t);
    const requests = {
        health: () => post('/mainnet', health),
        devnetHealth: () => post('/devnet', health),
        proxiedHealth: () => post('/api/rpc', health),
        blockhash: () => post('/mainnet', { ...health, method: 'getLatestBlockhash' }),
        coingecko: () => get(PRICE),
        chart: () => get('/coingecko/api/v3/coins/solana/market_chart?vs_currency=usd&days=1'),
        binance: () => get('/binance/api/v3/ticker/24hr?symbol=SOLUSDT'),
        coinbase: () => get('/coinbase/v2/prices/SOL-USD/spot'),
    };
    const everything = Object.keys(requests);
    const cases = [
        [{ match: 'getHealth' }, ['health', 'devnetHealth', 'proxiedHealth']],
        [{ match: 'getHealth', cluster: 'devnet' }, ['devnetHealth']],
        [{ match: 'proxy' }, ['proxiedHealth']],
        [{ match: 'getLatestBlockhash' }, ['blockhash']],
        [{ match: '*', cluster: 'mainnet' }, ['health', 'proxiedHealth', 'blockhash']],
        ...['coingecko', 'chart', 'binance', 'coinbase'].map((source) => [{ match: source }, [source]]),
        [{ match: '*' }, everything],
    ];
    for (const [fault, expected] of cases) {
        await control('fault', { kind: 'status', status: 503, ...fault });
        const hit = [];
        for (const name of everything) {
            if ((await requests[name]()).status === 503) {
                hit.push(name);
            }
        }
        assert.deepEqual(hit, expected, JSON.stringify(fault));
        await control('clear-faults');
        assert.equal((await requests[expected[0]]()).status, 200, 'cleared');
    }
});

test('a delay holds the answer back and combines with another fault', async (t) => {
    const { net, post, get, control } = await startNet(t);
    await control('fault', { match: 'getHealth', kind: 'latency', ms: 150, count: 1 });
    await control('fault', { match: 'getHealth', kind: 'status', status: 503, count: 1 });
    assert.equal((await outcome(post('/mainnet', health))).status, 503);
    assert.equal((await outcome(post('/mainnet', health))).status, 200);

    const { entries } = await (await get('/control/log')).json();
    assert.deepEqual(entries.map(({ fault }) => fault), ['latency+status', null]);
    assert.ok(entries[0].doneMs - entries[0].atMs >= 145);

    // Ending does not wait for a delayed answer.
    await control('fault', { match: '*', kind: 'latency', ms: 100_000 });
    const pending = outcome(get(PRICE));
    const arrived = async () => (await (await get('/control/log')).json()).entries.length === 3;
    const deadline = Date.now() + 5000;
    while (!await arrived()) {
        assert.ok(Date.now() < deadline, 'the request never arrived');
    }
    await net.close();
    assert.equal(await pending, 'broken');
    const given = net.log.entries().at(-1);
    assert.notEqual(given.doneMs, null, 'the delay is over');
    assert.equal(given.status, null);
});

test('a dropped request is not carried out, one dropped after submission is', async (t) => {
    const { rpc, control, lamports } = await startNet(t);
    const [from, to] = await Promise.all([makeSigner(), makeSigner()]);
    await control('balance', { cluster: 'mainnet', address: from.address, lamports: 10_000_000_000 });
    const { blockhash } = (await rpc('getLatestBlockhash', [])).result.value;
    const { bytes, signature } = await makeTransfer({ from, to: to.address, amount: 2_000_000_000, blockhash });

    for (const [kind, moved] of [['drop', 0], ['not-json', 0], ['drop-after', 2_000_000_000]]) {
        await control('fault', { match: 'sendTransaction', kind, count: 1 });
        await assert.rejects(send(rpc, bytes), kind);
        assert.equal(await lamports(to.address), moved, kind);
    }
    assert.equal((await rpc('getSignatureStatuses', [[signature]])).result.value[0].err, null);
});
