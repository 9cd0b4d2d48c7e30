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
