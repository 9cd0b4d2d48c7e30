/** Helpers of the tests: an instance per test, calls to it, and transfers built with the library. */

import { createRequire } from 'node:module';
import { Localnet } from '../../tools/localnet/localnet.mjs';

// The tests use the packages that are installed for the tool.
const require = createRequire(new URL('../../tools/localnet/package.json', import.meta.url));
const kit = require('@solana/kit');
const { getTransferSolInstruction } = require('@solana-program/system');

const CALL_TIMEOUT_MS = 60_000;

/** A running instance that stops at the end of test `t`. */
export async function startNet(t) {
    const net = new Localnet();
    await net.listen();
    t.after(() => net.close());

    const post = (path, body) => fetch(net.url + path, {
        method: 'POST',
        headers: { 'Content-Type': 'application/json' },
        body: JSON.stringify(body),
        signal: AbortSignal.timeout(CALL_TIMEOUT_MS),
    });
    const rpc = async (method, params, cluster = 'mainnet') => (
        await post(`/${cluster}`, { jsonrpc: '2.0', id: 1, method, params })).json();
    const control = async (name, body = {}) => {
        const response = await post(`/control/${name}`, body);
        return { status: response.status, ...await response.json() };
    };
    const ledger = async (cluster) => (
        await (await fetch(`${net.url}/control/ledger?cluster=${cluster}`)).json()).entries;
    const lamports = async (address) => (await rpc('getBalance', [address])).result.value;
    return { rpc, control, ledger, lamports };
}

export function makeSigner() {
    return kit.generateKeyPairSigner();
}

/** The bytes of a signed transfer, built without the code under test. */
export async function makeTransfer({ from, to, amount, blockhash }) {
    const instruction = getTransferSolInstruction({ source: from, destination: to, amount });
    const message = kit.pipe(
        kit.createTransactionMessage({ version: 'legacy' }),
        (draft) => kit.setTransactionMessageFeePayerSigner(from, draft),
        (draft) => kit.setTransactionMessageLifetimeUsingBlockhash({ blockhash, lastValidBlockHeight: 0n }, draft),
        (draft) => kit.appendTransactionMessageInstruction(instruction, draft),
    );
    const transaction = await kit.signTransactionMessageWithSigners(message);
    return {
        bytes: Buffer.from(kit.getTransactionEncoder().encode(transaction)),
        signature: kit.getSignatureFromTransaction(transaction),
    };
}

export function send(rpc, bytes) {
    return rpc('sendTransaction', [bytes.toString('base64'), { encoding: 'base64' }]);
}
