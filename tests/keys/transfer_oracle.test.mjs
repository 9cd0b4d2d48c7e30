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

/** True when the signature is right and the message is the one that the library builds. */
async function agrees(bytes, sample) {
    const { messageBytes, signatures } = kit.getTransactionDecoder().decode(bytes);
    const key = await kit.getPublicKeyFromAddress(sample.sender);
    return Object.keys(signatures).length === 1
        && await kit.verifySignature(key, signatures[sample.sender], messageBytes)
        && builtMessage(sample).equals(Buffer.from(messageBytes));
}

test(`${count} random transfers are what an independent library builds and verifies`, async () => {
    assert.equal(samples.length, count);
    for (const sample of samples) {
        const bytes = Buffer.from(sample.transaction, 'base64');
        assert.ok(await agrees(bytes, sample), sample.transaction);
        bytes[bytes.length - 1] ^= 1;
        assert.ok(!await agrees(bytes, sample), 'a flipped bit is noticed');
    }
});
