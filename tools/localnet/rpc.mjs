/** JSON-RPC 2.0 for one cluster: parsing requests, checking parameters, and the methods. */

import { getBase58Encoder, isSignature } from '@solana/kit';
import { TOKEN_PROGRAM_ADDRESS } from '@solana-program/token';
import { parseU64 } from './amounts.mjs';
import { BadInput, RpcError } from './errors.mjs';
import { isObject, nestsWithin, toJson } from './json.mjs';
import { describeEntry, describeTransaction } from './history.mjs';
import { describeAccount, describeTokenAccount } from './tokens.mjs';
import { MAX_TRANSACTION_BYTES } from './wire.mjs';

const API_VERSION = '2.3.0';
const MAX_NESTING = 32;
const MAX_STATUSES = 256;
const MAX_HISTORY = 1000;
/** The largest account of a live cluster. */
const MAX_ACCOUNT_BYTES = 10n * 1024n * 1024n;

const INVALID_PARAMS = -32602;
const PREFLIGHT_FAILURE = -32002;
const SIGNATURE_FAILURE = -32003;

function invalid(message) {
    return new RpcError(INVALID_PARAMS, message);
}

function stringParam(params, index) {
    if (params.length <= index) {
        throw invalid(`\`params\` should have at least ${index + 1} argument(s)`);
    }
    if (typeof params[index] !== 'string') {
        throw invalid(`Invalid params: argument ${index + 1} must be a string.`);
    }
    return params[index];
}

function bytesOfBase58(text, size, name) {
    let bytes = null;
    try {
        // Longer texts cannot have the right size, and decoding them costs time.
        bytes = text.length <= 4 * size ? getBase58Encoder().encode(text) : null;
    } catch {
        throw invalid(`Invalid ${name}: Invalid`);
    }
    if (bytes?.length !== size) {
        throw invalid(`Invalid ${name}: WrongSize`);
    }
    return bytes;
}

function addressParam(params, index) {
    const text = stringParam(params, index);
    bytesOfBase58(text, 32, 'param');
    return text;
}

function signatureParam(params, index) {
    const text = stringParam(params, index);
    if (!isSignature(text)) {
        throw invalid('Invalid param: Invalid');
    }
    return text;
}

function configParam(params, index) {
    const config = params[index] ?? {};
    if (!isObject(config)) {
        throw invalid(`Invalid params: argument ${index + 1} must be an object.`);
    }
    for (const key of ['commitment', 'preflightCommitment']) {
        if (config[key] != null && !['processed', 'confirmed', 'finalized'].includes(config[key])) {
            throw invalid(`Invalid params: unknown ${key}.`);
        }
    }
    return config;
}

function withContext(cluster, value) {
    return { context: { apiVersion: API_VERSION, slot: cluster.slot }, value };
}

function decodeWire(text, encoding = 'base58') {
    if (!['base58', 'base64'].includes(encoding)) {
        throw invalid(`unsupported encoding: ${encoding}. Supported encodings: base58, base64`);
    }
    if (text.length > 2 * MAX_TRANSACTION_BYTES) {
        throw invalid(`${encoding} encoded transaction too large: ${text.length} bytes`);
    }
    if (encoding === 'base64') {
        const bytes = Buffer.from(text, 'base64');
        // Buffer ignores characters that are not Base64; a node rejects them.
        if (bytes.toString('base64') !== text) {
            throw invalid('invalid base64 encoding');
        }
        return new Uint8Array(bytes);
    }
    try {
        return new Uint8Array(getBase58Encoder().encode(text));
    } catch {
        throw invalid('invalid base58 encoding');
    }
}

function sendTransaction(cluster, params) {
    const text = stringParam(params, 0);
    const config = configParam(params, 1);
    const bytes = decodeWire(text, config.encoding ?? undefined);
    const { signature, failure } = cluster.submit(bytes, { skipPreflight: config.skipPreflight === true });
    if (failure?.err === 'SignatureFailure') {
        throw new RpcError(SIGNATURE_FAILURE, 'Transaction signature verification failure');
    }
    if (failure) {
        throw new RpcError(PREFLIGHT_FAILURE, `Transaction simulation failed: ${failure.text}`, {
            accounts: null,
            err: failure.err,
            innerInstructions: null,
            logs: failure.logs,
            replacementBlockhash: null,
            returnData: null,
            unitsConsumed: failure.unitsConsumed,
        });
    }
    return signature;
}

function getTokenAccountsByOwner(cluster, params) {
    const owner = addressParam(params, 0);
    const filter = params[1];
    if (!isObject(filter) || (filter.mint === undefined) === (filter.programId === undefined)) {
        throw invalid('Invalid params: argument 2 must be an object with one of mint and programId.');
    }
    const { encoding } = configParam(params, 2);
    if (!['jsonParsed', 'base64'].includes(encoding)) {
        throw invalid('Invalid params: encoding must be jsonParsed or base64.');
    }
    if (filter.mint !== undefined && !cluster.isMint(addressParam([filter.mint], 0))) {
        throw invalid('Invalid param: could not find mint');
    }
    if (filter.programId !== undefined && filter.programId !== TOKEN_PROGRAM_ADDRESS) {
        throw invalid('Invalid param: unrecognized Token program id');
    }
    const accounts = cluster.tokenAccounts(owner, filter.mint);
    return withContext(cluster, accounts.map((account) => describeTokenAccount(account, encoding)));
}

function getSignatureStatuses(cluster, params) {
    const signatures = params[0];
    if (!Array.isArray(signatures) || signatures.length > MAX_STATUSES) {
        throw invalid(`Invalid params: argument 1 must be an array of at most ${MAX_STATUSES} signatures.`);
    }
    if (!signatures.every((text) => typeof text === 'string' && isSignature(text))) {
        throw invalid('Invalid param: Invalid');
    }
    configParam(params, 1);
    return withContext(cluster, signatures.map((signature) => cluster.status(signature)));
}

function getAccountInfo(cluster, params) {
    const address = addressParam(params, 0);
    const { encoding, dataSlice } = configParam(params, 1);
    if (!['jsonParsed', 'base64'].includes(encoding)) {
        throw invalid('Invalid params: encoding must be jsonParsed or base64.');
    }
    const slice = dataSlice == null ? undefined : {
        offset: Number(parseU64(dataSlice.offset, 'offset')),
        length: Number(parseU64(dataSlice.length, 'length')),
    };
    const account = cluster.account(address);
    return withContext(cluster, account && describeAccount(account, encoding, slice));
}

function getMinimumBalanceForRentExemption(cluster, params) {
    configParam(params, 1);
    const size = parseU64(params[0], 'the size');
    if (size > MAX_ACCOUNT_BYTES) {
        throw invalid(`Invalid param: the size exceeds ${MAX_ACCOUNT_BYTES} bytes`);
    }
    return cluster.rentExemptMinimum(size);
}

function getSignaturesForAddress(cluster, params) {
    const address = addressParam(params, 0);
    const { limit, before, until } = configParam(params, 1);
    const count = limit == null ? MAX_HISTORY : Number(parseU64(limit, 'limit'));
    if (count < 1 || count > MAX_HISTORY) {
        throw invalid(`Invalid limit; max ${MAX_HISTORY}`);
    }
    return cluster.transactionsOf(address, { limit: count, before, until })
        .map((entry) => describeEntry(entry, cluster.status(entry.signature)));
}

function getTransaction(cluster, params) {
    const signature = signatureParam(params, 0);
    if (configParam(params, 1).encoding !== 'jsonParsed') {
        throw invalid('Invalid params: encoding must be jsonParsed.');
    }
    const entry = cluster.transaction(signature);
    return entry && describeTransaction(entry);
}

const methods = {
    getHealth: () => 'ok',
    getBalance: (cluster, params) => {
        const address = addressParam(params, 0);
        configParam(params, 1);
        return withContext(cluster, cluster.balance(address));
    },
    getLatestBlockhash: (cluster, params) => (
        withContext(cluster, cluster.latestBlockhash(configParam(params, 0).commitment))),
    getBlockHeight: (cluster, params) => cluster.blockHeight(configParam(params, 0).commitment),
    isBlockhashValid: (cluster, params) => {
        const blockhash = addressParam(params, 0);
        configParam(params, 1);
        return withContext(cluster, cluster.isBlockhashValid(blockhash));
    },
    requestAirdrop: (cluster, params) => {
        const address = addressParam(params, 0);
        configParam(params, 2);
        return cluster.airdrop(address, parseU64(params[1], 'lamports'));
    },
    getAccountInfo,
    getMinimumBalanceForRentExemption,
    getTokenAccountsByOwner,
    getSignatureStatuses,
    getSignaturesForAddress,
    getTransaction,
    sendTransaction,
};

export const methodNames = Object.keys(methods);

/**
 * Parses the call in a request body: { id, method, params }, or { id, error } if it is invalid. The
 * id of a call without a usable id is null, as the protocol requires.
 */
export function readCall(body) {
    let call;
    try {
        call = JSON.parse(body);
    } catch {
        return { id: null, error: new RpcError(-32700, 'Parse error') };
    }
    const id = isObject(call) && ['string', 'number'].includes(typeof call.id) ? call.id : null;
    const params = call?.params ?? [];
    const wellFormed = isObject(call) && call.jsonrpc === '2.0' && typeof call.method === 'string'
        && (Array.isArray(params) || isObject(params)) && nestsWithin(params, MAX_NESTING);
    return wellFormed ? { id, method: call.method, params }
        : { id, error: new RpcError(-32600, 'Invalid request') };
}

/** Returns the text of an error reply. */
export function errorReply(id, { code, message, data }) {
    return toJson({ jsonrpc: '2.0', error: { code, message, data }, id });
}

function run(cluster, { method, params }) {
    if (!Object.hasOwn(methods, method)) {
        throw new RpcError(-32601, 'Method not found');
    }
    if (!Array.isArray(params)) {
        throw invalid('`params` should be an array');
    }
    return methods[method](cluster, params);
}

/** Executes a call and returns the text of the reply. Never throws. */
export function answerCall(cluster, call) {
    try {
        if (call.error) {
            throw call.error;
        }
        return toJson({ jsonrpc: '2.0', result: run(cluster, call), id: call.id });
    } catch (error) {
        if (error instanceof RpcError) {
            return errorReply(call.id, error);
        }
        if (error instanceof BadInput) {
            return errorReply(call.id, invalid(error.message));
        }
        return errorReply(call.id, new RpcError(-32603, `Internal error: ${error.message}`));
    }
}

