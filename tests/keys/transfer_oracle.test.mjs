// Holds the wallet's transfers against an independent implementation of the wire format: it decodes
// them, checks their signatures and builds the same messages again, byte for byte.
//
// TRANSFER_SAMPLES names the program that prints the transfers.

import assert from 'node:assert/strict';
import { execFileSync } from 'node:child_process';
import { createRequire } from 'node:module';
import { test } from 'node:test';
import { pathToFileURL } from 'node:url';

const require = createRequire(new URL('../../tools/localnet/package.json', import.meta.url));
const load = (name) => import(pathToFileURL(require.resolve(name)).href);
const kit = await load('@solana/kit');
const system = await load('@solana-program/system');

const count = 1000;
const samples = execFileSync(process.env.TRANSFER_SAMPLES, [String(count)], { encoding: 'utf8' })
    .trim()
    .split('\n')
    .map((line) => JSON.parse(line));

/** The message that the library itself builds for the same transfer. */
function builtMessage({ sender, recipient, blockhash, lamports }) {
    const instruction = system.getTransferSolInstruction({
        source: kit.createNoopSigner(sender),
        destination: recipient,
        amount: BigInt(lamports),
    });
    const message = kit.pipe(
        kit.createTransactionMessage({ version: 'legacy' }),
        (m) => kit.setTransactionMessageFeePayer(sender, m),
        (m) => kit.setTransactionMessageLifetimeUsingBlockhash({ blockhash, lastValidBlockHeight: 0n }, m),
        (m) => kit.appendTransactionMessageInstruction(instruction, m),
    );
    return Buffer.from(kit.compileTransaction(message).messageBytes);
}

async function verifies(address, signature, message) {
    const key = await kit.getPublicKeyFromAddress(address);
    return kit.verifySignature(key, signature, message);
}

test(`${count} random transfers are what an independent library reads and builds`, async () => {
    assert.equal(samples.length, count);
    for (const sample of samples) {
        const bytes = Buffer.from(sample.transaction, 'base64');
        const { messageBytes, signatures } = kit.getTransactionDecoder().decode(bytes);
        assert.deepEqual(Object.keys(signatures), [sample.sender]);
        assert.ok(await verifies(sample.sender, signatures[sample.sender], messageBytes));

        const message = kit.decompileTransactionMessage(
            kit.getCompiledTransactionMessageDecoder().decode(messageBytes));
        assert.equal(message.version, 'legacy');
        assert.equal(message.feePayer.address, sample.sender);
        assert.equal(message.instructions.length, 1);
        const transfer = system.parseTransferSolInstruction(message.instructions[0]);
        assert.equal(transfer.accounts.source.address, sample.sender);
        assert.equal(transfer.accounts.destination.address, sample.recipient);
        assert.equal(transfer.data.amount, BigInt(sample.lamports));

        assert.deepEqual(Buffer.from(messageBytes), builtMessage(sample));
    }
});

test('a flipped bit is noticed', async () => {
    const bytes = Buffer.from(samples[0].transaction, 'base64');
    bytes[bytes.length - 1] ^= 1;
    const { messageBytes, signatures } = kit.getTransactionDecoder().decode(bytes);
    assert.equal(await verifies(samples[0].sender, signatures[samples[0].sender], messageBytes), false);
    assert.notDeepEqual(Buffer.from(messageBytes), builtMessage(samples[0]));
});
