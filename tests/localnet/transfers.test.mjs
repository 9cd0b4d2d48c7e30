import assert from 'node:assert/strict';
import { test } from 'node:test';
import { makeSigner, makeTransfer, send, signMessage, startNet } from './helpers.mjs';

const FEE = 5000;
const SOL = 1_000_000_000;

/** An instance with a sender who holds 2 SOL and a recipient who holds 1. */
async function setUp(t) {
    const started = await startNet(t);
    const [from, to] = await Promise.all([makeSigner(), makeSigner()]);
    await started.control('balance', { cluster: 'mainnet', address: from.address, lamports: 2 * SOL });
    await started.control('balance', { cluster: 'mainnet', address: to.address, lamports: SOL });
    const latest = async () => (await started.rpc('getLatestBlockhash', [{ commitment: 'finalized' }])).result.value;
    const transfer = async (amount, changes = {}) => makeTransfer({
        from, to: to.address, amount, blockhash: (await latest()).blockhash, ...changes,
    });
    const balances = async () => [await started.lamports(from.address), await started.lamports(to.address)];
    return { ...started, from, to, latest, transfer, balances };
}

test('a transfer moves the amount and costs the fee, once', async (t) => {
    const { rpc, transfer, balances, tick } = await setUp(t);
    const { bytes, signature } = await transfer(SOL / 2);
    assert.equal((await send(rpc, bytes)).result, signature);
    assert.deepEqual(await balances(), [1.5 * SOL - FEE, 1.5 * SOL]);

    const again = (await send(rpc, bytes)).error;
    assert.equal(again.code, -32002);
    assert.equal(again.data.err, 'AlreadyProcessed');
    assert.deepEqual(await balances(), [1.5 * SOL - FEE, 1.5 * SOL]);

    const status = async () => (await rpc('getSignatureStatuses', [[signature]])).result.value[0].confirmationStatus;
    assert.equal(await status(), 'confirmed');
    tick(32 * 400);
    assert.equal(await status(), 'finalized');
});

test('a blockhash is good for 150 slots and then gone, on its own cluster only', async (t) => {
    const { rpc, transfer, tick, balances, control, latest, from } = await setUp(t);
    const atFirst = await latest();
    const [early, late, expired] = await Promise.all([1, 2, 3].map((amount) => transfer(amount)));
    assert.equal((await latest()).blockhash, atFirst.blockhash, 'one per slot');

    await control('balance', { cluster: 'devnet', address: from.address, lamports: 2 * SOL });
    assert.equal((await send(rpc, early.bytes, {}, '/devnet')).error.data.err, 'BlockhashNotFound');

    tick(400);
    assert.notEqual((await latest()).blockhash, atFirst.blockhash);
    assert.equal((await send(rpc, early.bytes)).result, early.signature);
    tick(149 * 400);
    assert.equal((await send(rpc, late.bytes)).result, late.signature);
    tick(400);
    const before = await balances();
    const { error } = await send(rpc, expired.bytes);
    assert.equal(error.code, -32002);
    assert.equal(error.message, 'Transaction simulation failed: Blockhash not found');
    assert.equal(error.data.err, 'BlockhashNotFound');
    assert.deepEqual(await balances(), before);
});

test('refusals change nothing and say why', async (t) => {
    const { rpc, control, transfer, balances, from } = await setUp(t);
    const stranger = await makeSigner();
    const altered = (bytes, change) => {
        const copy = Buffer.from(bytes);
        change(copy);
        return copy;
    };
    const { bytes } = await transfer(SOL);
    const overspent = await transfer(5 * SOL);
    const cases = [
        ['amount changed after signing', altered(bytes, (copy) => { copy[bytes.length - 3] ^= 1; }), -32003],
        ['signature changed', altered(bytes, (copy) => { copy[10] ^= 1; }), -32003],
        ['no signature', altered(bytes, (copy) => copy.fill(0, 1, 65)), -32003],
        ['more than there is', overspent.bytes, -32002, { InstructionError: [0, { Custom: 1 }] }],
        ['nothing left for rent', (await transfer(2 * SOL - FEE - 1)).bytes, -32002, { InsufficientFundsForRent: { account_index: 0 } }],
        ['dust to a new account', (await transfer(1, { to: stranger.address })).bytes, -32002, { InsufficientFundsForRent: { account_index: 1 } }],
        ['a sender without an account', (await transfer(1, { from: stranger })).bytes, -32002, 'AccountNotFound'],
        ['the sender listed twice', await signMessage(from, altered(bytes.subarray(65), (message) => message.copy(message, 36, 4, 36))), -32002, 'AccountLoadedTwice'],
    ];
    for (const [name, sent, code, err] of cases) {
        const { error } = await send(rpc, sent);
        assert.equal(error?.code, code, name);
        assert.deepEqual(error.data?.err, err, name);
    }
    assert.deepEqual(await balances(), [2 * SOL, SOL]);

    const { error } = await send(rpc, overspent.bytes);
    assert.equal(error.message, 'Transaction simulation failed: Error processing Instruction 0: custom program error: 0x1');
    assert.ok(error.data.logs.some((line) => line.includes('insufficient lamports')));

    await control('expire-blockhashes', { cluster: 'mainnet' });
    assert.equal((await send(rpc, bytes)).error.data.err, 'BlockhashNotFound');
    assert.equal((await send(rpc, altered(bytes, (copy) => { copy[10] ^= 1; }))).error.code, -32003, 'the signature comes first');
});

test('without preflight a doomed transfer is accepted and fails on its own', async (t) => {
    const { rpc, transfer, balances } = await setUp(t);
    const { bytes, signature } = await transfer(5 * SOL);
    assert.equal((await send(rpc, bytes, { skipPreflight: true })).result, signature);
    assert.deepEqual(await balances(), [2 * SOL - FEE, SOL]);
    const [status] = (await rpc('getSignatureStatuses', [[signature]])).result.value;
    assert.deepEqual(status.err, { InstructionError: [0, { Custom: 1 }] });
});

test('what cannot be a transaction is refused before the runtime sees it', async (t) => {
    const { rpc, transfer, balances, from } = await setUp(t);
    const { bytes } = await transfer(1);
    const message = bytes.subarray(65);
    // Correctly signed, so that nothing but the reader of the message stands in the way.
    const signed = async (change) => {
        const copy = Buffer.from(message);
        return signMessage(from, change(copy) ?? copy);
    };
    const programAt = 4 + 3 * 32 + 32 + 1;
    const cases = {
        empty: Buffer.alloc(0),
        'cut in the signature': bytes.subarray(0, 30),
        'cut in the message': await signed((copy) => copy.subarray(0, -1)),
        'something left over': await signed((copy) => Buffer.concat([copy, Buffer.from([0])])),
        'no signers': await signed((copy) => { copy[0] = 0; }),
        'two signers, one signature': await signed((copy) => { copy[0] = 2; }),
        'nobody to pay': await signed((copy) => { copy[1] = 1; }),
        'more read-only accounts than accounts': await signed((copy) => { copy[2] = 9; }),
        'unknown version': await signed((copy) => Buffer.concat([Buffer.from([0x85]), copy])),
        'unknown program': await signed((copy) => { copy[programAt] = 9; }),
        'payer as the program': await signed((copy) => { copy[programAt] = 0; }),
        'unknown account': await signed((copy) => { copy[programAt + 2] = 9; }),
        'length of four bytes': Buffer.from([0x80, 0x80, 0x80, 0x01]),
        'too large': Buffer.concat([bytes, Buffer.alloc(1233)]),
    };
    for (const [name, sent] of Object.entries(cases)) {
        assert.equal((await send(rpc, sent)).error?.code, -32602, name);
    }
    const text = bytes.toString('base64');
    const wrongTexts = [
        [], [5], ['0OIl'], [text], [text, { encoding: 'hex' }], [`${text}\n`, { encoding: 'base64' }],
        [`${text}=`, { encoding: 'base64' }],
    ];
    for (const params of wrongTexts) {
        assert.equal((await rpc('sendTransaction', params)).error?.code, -32602, JSON.stringify(params));
    }
    assert.deepEqual(await balances(), [2 * SOL, SOL]);
});
