// Measures the libraries that web wallets use, with the npm modules of the local cluster and with Node's
// OpenSSL. Prints the nanoseconds per call of the yardstick that the argument names. Run it in tools/localnet, whose
// modules it uses.

import { createPrivateKey, generateKeyPairSync, sign } from "node:crypto";
import { createRequire } from "node:module";

const require = createRequire(`${process.cwd()}/package.json`);
const { address, appendTransactionMessageInstruction, createKeyPairSignerFromBytes, createTransactionMessage,
    getBase58Codec, getBase64EncodedWireTransaction, lamports, pipe, setTransactionMessageFeePayerSigner,
    setTransactionMessageLifetimeUsingBlockhash, signTransactionMessageWithSigners } = require("@solana/kit");
const { getTransferSolInstruction } = require("@solana-program/system");

const SECONDS = 0.5;
const RECIPIENT = address("4uQeVj5tqViQh7yWWGStvkEG1Zmhx6uasJtWCJziofM");

/** Nanoseconds that one `work` takes, after a run that warms the compiler up. */
async function time(work) {
    let nanoseconds = 0;
    for (const seconds of [SECONDS, SECONDS]) {
        let rounds = 0;
        const begin = process.hrtime.bigint();
        do {
            await work();
            rounds += 1;
            nanoseconds = Number(process.hrtime.bigint() - begin);
        } while (nanoseconds < seconds * 1e9);
        nanoseconds /= rounds;
    }
    return nanoseconds;
}

/** The same for work that does not wait, a thousand times for each look at the clock. */
async function timeAtOnce(work) {
    return await time(() => {
        for (let round = 0; round < 1000; round += 1) {
            work();
        }
    }) / 1000;
}

const sample = size => Uint8Array.from({ length: size }, (_, index) => index * 151 + 7);
const codec = getBase58Codec();
const { privateKey } = generateKeyPairSync("ed25519");
const key = createPrivateKey(privateKey.export({ format: "pem", type: "pkcs8" }));
const message = sample(150);

const jwk = privateKey.export({ format: "jwk" });
const signer = await createKeyPairSignerFromBytes(Buffer.concat([
    Buffer.from(jwk.d, "base64url"), Buffer.from(jwk.x, "base64url")]));

async function buildAndSign() {
    const transaction = await signTransactionMessageWithSigners(pipe(
        createTransactionMessage({ version: "legacy" }),
        made => setTransactionMessageFeePayerSigner(signer, made),
        made => setTransactionMessageLifetimeUsingBlockhash(
            { blockhash: RECIPIENT, lastValidBlockHeight: 1n }, made),
        made => appendTransactionMessageInstruction(getTransferSolInstruction(
            { source: signer, destination: RECIPIENT, amount: lamports(1n) }), made)));
    return getBase64EncodedWireTransaction(transaction);
}

const yardsticks = {
    signOpenSsl: () => timeAtOnce(() => sign(null, message, key)),
    buildAndSign: () => time(buildAndSign),
};
for (const size of [32, 64]) {
    const bytes = sample(size);
    const text = codec.decode(bytes);
    yardsticks[`base58Encode/${size}`] = () => timeAtOnce(() => codec.decode(bytes));
    yardsticks[`base58Decode/${size}`] = () => timeAtOnce(() => codec.encode(text));
}
console.log(await yardsticks[process.argv[2]]());
