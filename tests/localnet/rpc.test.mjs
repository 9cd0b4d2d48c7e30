import assert from 'node:assert/strict';
import { test } from 'node:test';
import { USDC_MINTS } from '../../tools/localnet/cluster.mjs';
import { makeSigner, startNet } from './helpers.mjs';

test('the clusters and the proxy keep their balances apart', async (t) => {
    const { rpc, control, lamports, post } = await startNet(t);
    const { address } = await makeSigner();
    await control('balance', { cluster: 'mainnet', address, lamports: 7 });
    await control('balance', { cluster: 'devnet', address, lamports: '18446744073709551615' });

    assert.equal(await lamports(address), 7);
    assert.equal(await lamports(address, '/api/rpc'), 7);
    for (const path of ['/devnet', '/api/rpc?network=devnet']) {
        const response = await post(path, { jsonrpc: '2.0', id: 1, method: 'getBalance', params: [address] });
        assert.match(await response.text(), /"value":18446744073709551615[,}]/, 'a bare number, not rounded');
    }
    assert.equal((await rpc('getHealth')).result, 'ok');
    const { address: unknown } = await makeSigner();
    assert.equal(await lamports(unknown), 0);
});

test('token accounts come from the runtime in the shape of a node', async (t) => {
    const { rpc, control, post } = await startNet(t);
    const [owner, other, extra] = await Promise.all([makeSigner(), makeSigner(), makeSigner()]);
    const usdc = (body) => control('usdc', { cluster: 'mainnet', address: owner.address, ...body });
    const query = (who, mint) => [who.address, { mint }, { encoding: 'jsonParsed' }];
    const held = async (who) => (await rpc('getTokenAccountsByOwner', query(who, USDC_MINTS.mainnet))).result.value;

    const { account } = await usdc({ amount: '1.25' });
    const [only] = await held(owner);
    assert.equal(only.pubkey, account);
    assert.deepEqual(only.account.data.parsed.info, {
        isNative: false,
        mint: USDC_MINTS.mainnet,
        owner: owner.address,
        state: 'initialized',
        tokenAmount: { amount: '1250000', decimals: 6, uiAmount: 1.25, uiAmountString: '1.25' },
    });
    const raw = await post('/mainnet', {
        jsonrpc: '2.0', id: 1, method: 'getTokenAccountsByOwner', params: query(owner, USDC_MINTS.mainnet),
    });
    assert.match(await raw.text(), /"rentEpoch":18446744073709551615[,}]/);

    await usdc({ amount: 0.75, account: extra.address });
    assert.deepEqual((await held(owner)).map((item) => item.account.data.parsed.info.tokenAmount.uiAmount).sort(), [0.75, 1.25]);
    await usdc({ amount: null });
    assert.deepEqual((await held(owner)).map((item) => item.pubkey), [extra.address]);
    assert.deepEqual(await held(other), []);

    const elsewhere = await rpc('getTokenAccountsByOwner', query(owner, USDC_MINTS.devnet), '/devnet');
    assert.deepEqual(elsewhere.result.value, []);
});

test('an airdrop arrives, and a second one of the same amount too', async (t) => {
    const { rpc, lamports } = await startNet(t);
    const { address } = await makeSigner();
    const first = (await rpc('requestAirdrop', [address, 1_000_000_000], '/devnet')).result;
    const second = (await rpc('requestAirdrop', [address, 1_000_000_000], '/devnet')).result;
    assert.notEqual(first, second);
    assert.equal(await lamports(address, '/devnet'), 2_000_000_000);
    assert.equal(await lamports(address, '/mainnet'), 0);

    const { result } = await rpc('getSignatureStatuses', [[first, second]], '/devnet');
    assert.deepEqual(result.value.map(({ err, confirmationStatus }) => [err, confirmationStatus]),
        [[null, 'confirmed'], [null, 'confirmed']]);
});

test('a call that is wrong gets the error code a node gives', async (t) => {
    const { post } = await startNet(t);
    const { address } = await makeSigner();
    const call = (method, params) => ({ jsonrpc: '2.0', id: 'x', method, params });
    const cases = [
        [-32700, null, '{"jsonrpc"'],
        [-32600, null, []],
        [-32600, 'x', { id: 'x', method: 'getHealth' }],
        [-32600, 'x', call(5, [])],
        [-32600, 'x', call('getHealth', 'text')],
        [-32600, 'x', JSON.stringify(call('getHealth', [])).replace('[]', '['.repeat(9000) + ']'.repeat(9000))],
        [-32601, 'x', call('getNothing', [])],
        [-32601, 'x', call('constructor', [])],
        [-32602, 'x', call('getBalance', { address })],
        [-32602, 'x', call('getBalance')],
        [-32602, 'x', call('getBalance', [5])],
        [-32602, 'x', call('getBalance', ['0OIl'])],
        [-32602, 'x', call('getBalance', [`${address}1`])],
        [-32602, 'x', call('getBalance', [address, 'confirmed'])],
        [-32602, 'x', call('getLatestBlockhash', [{ commitment: 'soon' }])],
        [-32602, 'x', call('getTokenAccountsByOwner', [address])],
        [-32602, 'x', call('getTokenAccountsByOwner', [address, { mint: address }, { encoding: 'jsonParsed' }])],
        [-32602, 'x', call('getTokenAccountsByOwner', [address, { mint: USDC_MINTS.mainnet }, { encoding: 'xml' }])],
        [-32602, 'x', call('requestAirdrop', [address, -1])],
        [-32602, 'x', call('requestAirdrop', [address, '99999999999999999999'])],
        [-32602, 'x', call('requestAirdrop', [address, '18446744073709551615'])],
        [-32602, 'x', call('getSignatureStatuses', [['short']])],
    ];
    for (const [code, id, body] of cases) {
        const response = await post('/mainnet', body);
        const reply = await response.json();
        const shown = JSON.stringify(body).slice(0, 120);
        assert.equal(response.status, 200, shown);
        assert.equal(reply.error?.code, code, shown);
        assert.equal(reply.id, id, shown);
        assert.ok(!('result' in reply), shown);
    }
});

test('HTTP that is not a call gets a plain refusal', async (t) => {
    const { get, post } = await startNet(t);
    const health = { jsonrpc: '2.0', id: 1, method: 'getHealth' };
    const cases = [
        [405, () => get('/mainnet')],
        [405, () => post('/coinbase/v2/prices/SOL-USD/spot', {})],
        [415, () => post('/mainnet', health, 'text/plain')],
        [200, () => post('/mainnet', health, 'application/json; charset=utf-8')],
        [404, () => post('/control/nothing', {})],
        [404, () => get('/nothing')],
        [413, () => post('/mainnet', 'x'.repeat(70_000))],
        [413, () => post('/control/price', 'x'.repeat(8_000_000))],
        [200, () => get('/explorer/tx/abc?cluster=devnet')],
        [200, () => get('/wallet')],
    ];
    for (const [status, ask] of cases) {
        assert.equal((await ask()).status, status, String(ask));
    }
});

test('control input that is unclear is refused with a reason', async (t) => {
    const { control, post } = await startNet(t);
    const { address } = await makeSigner();
    const cases = [
        ['balance', { cluster: 'testnet', address, lamports: 1 }],
        ['balance', { cluster: 'mainnet', address, lamports: 1.5 }],
        ['balance', { cluster: 'mainnet', address: 'x', lamports: 1 }],
        ['balance', { cluster: 'mainnet', address: USDC_MINTS.mainnet, lamports: 1 }],
        ['balance', { cluster: 'mainnet', address, lamports: 1, amount: 1 }],
        ['usdc', { cluster: 'mainnet', address, amount: '1.1234567' }],
        ['usdc', { cluster: 'mainnet', address, amount: [1] }],
        ['usdc', { cluster: 'mainnet', address, amount: 1, account: USDC_MINTS.mainnet }],
        ['price', { price: 0 }],
        ['price', { change: '1' }],
        ['price', { chart: [1, null] }],
        ['fault', { match: 'nothing', kind: 'drop' }],
        ['fault', { match: '*', kind: 'explode' }],
        ['fault', { match: '*', kind: 'latency' }],
        ['fault', { match: '*', kind: 'drop', count: 0 }],
        ['fault', { match: '*', kind: 'drop', ms: 5 }],
        ['fault', { match: '*', kind: 'drop', cluster: 'testnet' }],
        ['expire-blockhashes', { cluster: 'testnet' }],
        ['clear-log', '{'],
    ];
    for (const [name, body] of cases) {
        const { status, error } = await control(name, body);
        assert.equal(status, 400, JSON.stringify([name, body]));
        assert.ok(error.length > 0);
    }
    const fromPage = await fetch((await post('/control/clear-log', {})).url, {
        method: 'POST', headers: { Origin: 'http://example.com' }, body: '{}',
    });
    assert.equal(fromPage.status, 403);
});
