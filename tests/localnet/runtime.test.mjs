// A cluster behaves like the real runtime: transfers and rejected ones.

import assert from 'node:assert/strict';
import { test } from 'node:test';
import { makeSigner, makeTransfer, send, startNet } from './helpers.mjs';

const FEE = 5000;
const SOL = 1_000_000_000;

/** An instance with a sender who has 2 SOL and a recipient who has 1. */
async function setUp(t) {
    const started = await startNet(t);
    const [from, to] = await Promise.all([makeSigner(), makeSigner()]);
    await started.control('balance', { cluster: 'mainnet', address: from.address, lamports: 2 * SOL });
    await started.control('balance', { cluster: 'mainnet', address: to.address, lamports: SOL });
    const { blockhash } = (await started.rpc('getLatestBlockhash', [])).result.value;
    const transfer = (amount, changes = {}) => makeTransfer({ from, to: to.address, amount, blockhash, ...changes });
    const balances = async () => [await started.lamports(from.address), await started.lamports(to.address)];
    return { ...started, transfer, balances };
}

test('a transfer moves the amount and costs the fee, once; refusals change nothing and say why', async (t) => {
    const { rpc, transfer, balances } = await setUp(t);
    const stranger = await makeSigner();
    const { bytes, signature } = await transfer(SOL / 2);
    const flipped = (index) => bytes.map((byte, at) => (at === index ? byte ^ 1 : byte));
    const broke = { InstructionError: [0, { Custom: 1 }] };
    assert.equal((await send(rpc, bytes)).result, signature);
    const cases = [
        ['the same again', bytes, -32002, 'AlreadyProcessed'],
        ['amount changed after signing', flipped(bytes.length - 3), -32003],
        ['more than there is', (await transfer(5 * SOL)).bytes, -32002, broke],
        ['nothing left for the fee', (await transfer(1.5 * SOL - FEE)).bytes, -32002, broke],
        ['dust to a new account', (await transfer(1, { to: stranger.address })).bytes, -32002,
            { InsufficientFundsForRent: { account_index: 1 } }],
        ['a sender without an account', (await transfer(1, { from: stranger })).bytes, -32002, 'AccountNotFound'],
        ['cut in the message', bytes.subarray(0, -1), -32602],
        ['empty', Buffer.alloc(0), -32602],
    ];
    for (const [name, sent, code, err] of cases) {
        const { error } = await send(rpc, Buffer.from(sent));
        assert.equal(error?.code, code, name);
        assert.deepEqual(error.data?.err, err, name);
    }
    assert.deepEqual(await balances(), [1.5 * SOL - FEE, 1.5 * SOL]);
});

test('a transfer can be followed: height, validity, status, history and ledger agree', async (t) => {
    const { rpc, control, ledger, transfer } = await setUp(t);
    const latest = async (cluster, commitment) => (
        await rpc('getLatestBlockhash', [{ commitment }], cluster)).result.value;
    const height = async (commitment) => (await rpc('getBlockHeight', [{ commitment }])).result;
    const knows = async (cluster, blockhash) => (
        await rpc('isBlockhashValid', [blockhash, { commitment: 'processed' }], cluster)).result.value;

    await control('advance-slots', { slots: 3 });
    for (const commitment of ['finalized', 'confirmed']) {
        const { blockhash, lastValidBlockHeight } = await latest('mainnet', commitment);
        assert.ok(Math.abs(lastValidBlockHeight - await height(commitment) - 150) <= 2, commitment);
        assert.equal(await knows('mainnet', blockhash), true, commitment);
        assert.equal(await knows('devnet', blockhash), false, commitment);
    }

    const { blockhash, lastValidBlockHeight } = await latest('mainnet', 'finalized');
    const { bytes, signature } = await transfer(SOL / 4, { blockhash });
    const late = await transfer(SOL / 8, { blockhash });
    const status = async () => (await rpc('getSignatureStatuses', [[signature]])).result.value[0];
    assert.equal((await send(rpc, bytes)).result, signature);
    assert.equal((await status()).confirmationStatus, 'confirmed');
    // Within the time of a hundred slots, so that a slow machine changes nothing.
    await control('advance-slots', { slots: lastValidBlockHeight - await height('processed') - 100 });
    assert.equal(await knows('mainnet', blockhash), true);
    await control('advance-slots', { slots: lastValidBlockHeight - await height('processed') + 1 });
    assert.equal(await knows('mainnet', blockhash), false);
    assert.equal((await status()).confirmationStatus, 'finalized');
    for (const expired of [bytes, late.bytes]) {
        const { error } = await send(rpc, expired);
        assert.deepEqual([error.code, error.data.err], [-32002, 'BlockhashNotFound']);
    }

    const [entry, ...others] = await ledger('mainnet');
    assert.deepEqual([entry.signature, entry.err, others], [signature, null, []]);
    assert.deepEqual(await ledger('devnet'), []);
    const [{ from, to, lamports }] = entry.transfers;
    assert.equal(lamports, SOL / 4);
    for (const address of [from, to]) {
        const { result } = await rpc('getSignaturesForAddress', [address, { limit: 5 }]);
        assert.deepEqual(result.map((item) => [item.signature, item.err]), [[signature, null]]);
        assert.deepEqual((await rpc('getSignaturesForAddress', [address, { before: signature }])).result, []);
    }
    const { result } = await rpc('getTransaction', [signature, { encoding: 'jsonParsed' }]);
    assert.deepEqual(result.transaction.message.instructions[0].parsed,
        { info: { destination: to, lamports, source: from }, type: 'transfer' });
    assert.deepEqual(result.transaction.message.accountKeys.map(({ pubkey, signer, writable }) => (
        [pubkey, signer, writable])), [[from, true, true], [to, false, true], ['1'.repeat(32), false, false]]);
    assert.deepEqual([result.meta.fee, result.meta.preBalances[1], result.meta.postBalances[1]],
        [FEE, SOL, 1.25 * SOL]);
});

test('an account is described as a node does, with the least that it keeps', async (t) => {
    const { rpc, control } = await setUp(t);
    const owner = (await makeSigner()).address;
    const stranger = (await makeSigner()).address;
    const { account: tokenAccount } = await control('usdc', { cluster: 'mainnet', address: owner, amount: '12.5' });
    await control('balance', { cluster: 'mainnet', address: owner, lamports: 890_880 });
    const mint = 'EPjFWdd5AufqSSqeM2qN1xzybapC8G4wEGGkZwyTDt1v';
    const system = '1'.repeat(32);
    const tokens = 'TokenkegQfeZyiNwAJbNbGKPFXCWuBvf9Ss623VQ5DA';
    const cases = [
        ['nobody', stranger, null],
        ['a wallet', owner, { executable: false, owner: system, space: 0 }],
        ['a token account', tokenAccount, { executable: false, owner: tokens, space: 165, type: 'account' }],
        ['a mint', mint, { executable: false, owner: tokens, space: 82, type: 'mint' }],
        ['a program', system, { executable: true, owner: 'NativeLoader1111111111111111111111111111111' }],
    ];
    for (const [name, address, expected] of cases) {
        for (const encoding of ['base64', 'jsonParsed']) {
            const { value } = (await rpc('getAccountInfo', [address, { encoding }])).result;
            const { type, ...members } = expected ?? {};
            assert.deepEqual(value && Object.fromEntries(Object.keys(members).map((key) => [key, value[key]])),
                expected && members, name);
            if (encoding === 'jsonParsed') {
                assert.equal(value?.data.parsed?.type, type, name);
            } else if (value) {
                assert.equal(Buffer.from(...value.data).length, value.space, name);
            }
        }
    }
    assert.equal((await rpc('getMinimumBalanceForRentExemption', [0])).result, 890_880);
});
