import assert from 'node:assert/strict';
import { spawn } from 'node:child_process';
import { once } from 'node:events';
import { mkdtempSync, readFileSync, rmSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { join } from 'node:path';
import { test } from 'node:test';
import { fileURLToPath } from 'node:url';
import { makeSigner, startNet } from './helpers.mjs';

const server = fileURLToPath(new URL('../../tools/localnet/server.mjs', import.meta.url));
const TIMEOUT_MS = 20_000;

function run(t, args) {
    const child = spawn(process.execPath, [server, ...args], { stdio: ['ignore', 'pipe', 'pipe'] });
    t.after(() => child.kill('SIGKILL'));
    const ended = once(child, 'close', { signal: AbortSignal.timeout(TIMEOUT_MS) });
    const output = { out: '', err: '' };
    child.stdout.on('data', (chunk) => { output.out += chunk; });
    child.stderr.on('data', (chunk) => { output.err += chunk; });
    return { child, ended, output };
}

async function runUntilReady(t, args) {
    const started = run(t, args);
    await Promise.race([
        once(started.child.stdout, 'data'),
        started.ended.then(() => assert.fail(`ended early: ${started.output.err}`)),
    ]);
    return { ...started, url: JSON.parse(started.output.out).url };
}

function folder(t) {
    const path = mkdtempSync(join(tmpdir(), 'localnet-test-'));
    t.after(() => rmSync(path, { recursive: true }));
    return path;
}

test('it starts as told, points the wallet at itself and logs what was asked', async (t) => {
    const { address } = await makeSigner();
    const into = folder(t);
    const { child, ended, output, url } = await runUntilReady(t, [
        '--fund', `devnet:${address}=1.5`, '--usdc', `${address}=2.25`, '--price', '20', '--change', '-1.5',
        '--endpoints', join(into, 'endpoints.json'), '--log', join(into, 'log'),
    ]);
    const endpoints = JSON.parse(readFileSync(join(into, 'endpoints.json'), 'utf8'));
    const get = async (path) => (await fetch(path)).json();

    const state = await get(`${url}/control/state?address=${address}`);
    assert.deepEqual([state.clusters.mainnet.sol, state.clusters.devnet.sol], ['0', '1.5']);
    assert.deepEqual([state.clusters.mainnet.usdc, state.clusters.devnet.usdc], ['2.25', '2.25']);
    const price = await get(`${endpoints.coingecko}/api/v3/simple/price?ids=solana&vs_currencies=usd&include_24hr_change=true`);
    assert.deepEqual(price, { solana: { usd: 20, usd_24h_change: -1.5 } });
    assert.equal((await get(`${endpoints.coinbase}/v2/prices/SOL-USD/spot`)).data.amount, '20');
    assert.equal(Number((await get(`${endpoints.binance}/api/v3/ticker/24hr?symbol=SOLUSDT`)).lastPrice), 20);
    assert.equal((await fetch(`${endpoints.explorer}/tx/x`)).status, 200);
    assert.equal((await fetch(endpoints.walletApp)).status, 200);
    const call = JSON.stringify({ jsonrpc: '2.0', id: 1, method: 'getBalance', params: [address] });
    for (const [base, lamports] of [[endpoints.mainnet, 0], [endpoints.devnet, 1_500_000_000]]) {
        const response = await fetch(base, { method: 'POST', headers: { 'Content-Type': 'application/json' }, body: call });
        assert.equal((await response.json()).result.value, lamports);
    }

    child.kill('SIGTERM');
    assert.deepEqual(await ended, [0, null]);
    assert.equal(output.out, `${JSON.stringify({ url })}\n`);
    const logged = readFileSync(join(into, 'log'), 'utf8').trimEnd().split('\n').map((line) => JSON.parse(line));
    assert.deepEqual(logged.map(({ name }) => name), ['coingecko', 'coinbase', 'binance', 'explorer', null, 'getBalance', 'getBalance']);
    assert.deepEqual(logged.at(-1).params, [address]);
});

test('it ends with the process it was told to follow', async (t) => {
    const followed = spawn(process.execPath, ['-e', 'setInterval(() => {}, 1000)'], { stdio: 'ignore' });
    t.after(() => followed.kill('SIGKILL'));
    const { child, ended } = await runUntilReady(t, ['--parent', String(followed.pid)]);
    assert.equal(child.exitCode, null);
    followed.kill('SIGKILL');
    assert.deepEqual(await ended, [0, null]);
});

test('a command line that makes no sense ends it with a reason', async (t) => {
    const { address } = await makeSigner();
    const cases = [
        ['--nothing'], ['--port', '70000'], ['--port', '1.5'], ['--host', '0.0.0.0'], ['--price', '-1'],
        ['--fund', `${address}`], ['--fund', `${address}=1.0000000001`], ['--fund', 'short=1'],
        ['--usdc', `testnet:${address}=1`], ['--parent', '0'],
    ];
    await Promise.all(cases.map(async (args) => {
        const { ended, output } = run(t, args);
        assert.deepEqual(await ended, [2, null], args.join(' '));
        assert.match(output.err, /^localnet: .+\n$/s);
        assert.equal(output.out, '');
    }));
    const { ended, output } = run(t, ['--help']);
    assert.deepEqual(await ended, [0, null]);
    assert.match(output.out, /--endpoints FILE/);
});

test('the log tells what was asked, by whom, and what was answered', async (t) => {
    const { get, post, control } = await startNet(t);
    const { address } = await makeSigner();
    const call = { jsonrpc: '2.0', id: 1, method: 'getBalance', params: [address] };
    await control('fault', { match: 'getBalance', kind: 'drop', count: 1 });
    await assert.rejects(post('/api/rpc?network=devnet', call));
    await post('/mainnet', call);
    await get('/coinbase/v2/prices/SOL-USD/spot');

    const read = async (query = '') => (await (await get(`/control/log${query}`)).json()).entries;
    const [dropped, answered, price] = await read();
    assert.deepEqual(
        [dropped.method, dropped.path, dropped.query, dropped.cluster, dropped.status, dropped.fault],
        ['POST', '/api/rpc', { network: 'devnet' }, 'devnet', null, 'drop']);
    assert.deepEqual(
        [answered.cluster, answered.name, answered.params, answered.contentType, answered.status, answered.fault],
        ['mainnet', 'getBalance', [address], 'application/json', 200, null]);
    assert.deepEqual(JSON.parse(answered.body), call);
    assert.deepEqual([price.name, price.method], ['coinbase', 'GET']);
    assert.ok(dropped.atMs <= dropped.doneMs && dropped.doneMs <= answered.atMs + 1);

    assert.deepEqual((await read('?name=getBalance')).map(({ seq }) => seq), [dropped.seq, answered.seq]);
    assert.deepEqual((await read(`?after=${answered.seq}`)).map(({ seq }) => seq), [price.seq]);
    await control('clear-log');
    assert.deepEqual(await read(), []);
});
