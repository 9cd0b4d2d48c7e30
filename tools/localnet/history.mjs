/** What a cluster remembers of executed transactions, and a node's description of it. */

import { getBase58Decoder } from '@solana/kit';
import { SYSTEM_PROGRAM_ADDRESS } from '@solana-program/system';

const TRANSFER_INSTRUCTION = 2;
const TRANSFER_BYTES = 12;

/** The transfer in an instruction of the System Program, or null. */
function transferIn({ program, accounts, data }, keys) {
    const view = new DataView(data.buffer, data.byteOffset, data.byteLength);
    if (keys[program] !== SYSTEM_PROGRAM_ADDRESS || data.length !== TRANSFER_BYTES
        || view.getUint32(0, true) !== TRANSFER_INSTRUCTION || accounts.length < 2) {
        return null;
    }
    return { from: keys[accounts[0]], to: keys[accounts[1]], lamports: view.getBigUint64(4, true) };
}

function describeInstruction(instruction, keys) {
    const transfer = transferIn(instruction, keys);
    const programId = keys[instruction.program];
    if (transfer) {
        const { from, to, lamports } = transfer;
        return {
            parsed: { info: { destination: to, lamports, source: from }, type: 'transfer' },
            program: 'system',
            programId,
            stackHeight: null,
        };
    }
    return {
        accounts: instruction.accounts.map((index) => keys[index]),
        data: getBase58Decoder().decode(instruction.data),
        programId,
        stackHeight: null,
    };
}

function describeKeys({ keys, requiredSignatures, readonlySigned, readonlyUnsigned }) {
    return keys.map((pubkey, index) => {
        const signer = index < requiredSignatures;
        const writable = index < (signer ? requiredSignatures - readonlySigned : keys.length - readonlyUnsigned);
        return { pubkey, signer, source: 'transaction', writable };
    });
}

/** Formats one element of a getSignaturesForAddress reply. */
export function describeEntry({ signature, slot, err, blockTime }, { confirmationStatus }) {
    return { blockTime, confirmationStatus, err, memo: null, signature, slot };
}

/** Formats a getTransaction reply with parsed instructions. */
export function describeTransaction({ signature, slot, err, blockTime, message, preBalances, postBalances }) {
    const sum = (amounts) => amounts.reduce((total, amount) => total + amount, 0n);
    return {
        blockTime,
        meta: {
            err,
            fee: sum(preBalances) - sum(postBalances),
            innerInstructions: [],
            logMessages: [],
            postBalances,
            postTokenBalances: [],
            preBalances,
            preTokenBalances: [],
            rewards: [],
            status: err === null ? { Ok: null } : { Err: err },
        },
        slot,
        transaction: {
            message: {
                accountKeys: describeKeys(message),
                instructions: message.instructions.map((item) => describeInstruction(item, message.keys)),
                recentBlockhash: message.blockhash,
            },
            signatures: [signature],
        },
        version: message.versioned ? 0 : 'legacy',
    };
}

/** The latest transactions of a cluster, at most `limit`. */
export class History {
    #entries = new Map();
    #limit;
    #nextSeq = 1;

    constructor(limit) {
        this.#limit = limit;
    }

    get size() {
        return this.#entries.size;
    }

    get latestSignature() {
        return [...this.#entries.keys()].at(-1) ?? null;
    }

    /** Adds a transaction; of one without `message` only the result is known. */
    add(entry) {
        this.#entries.set(entry.signature, { seq: this.#nextSeq, ...entry });
        this.#nextSeq += 1;
        if (this.#entries.size > this.#limit) {
            this.#entries.delete(this.#entries.keys().next().value);
        }
    }

    find(signature) {
        return this.#entries.get(signature) ?? null;
    }

    findTransaction(signature) {
        const entry = this.find(signature);
        return entry?.message ? entry : null;
    }

    /** The transactions that name `address`, newest first, older than `before` and newer than `until`. */
    transactionsOf(address, { limit, before, until }) {
        const below = this.find(before)?.seq ?? Infinity;
        const above = this.find(until)?.seq ?? 0;
        return this.#transactions()
            .filter(({ seq, message }) => seq < below && seq > above && message.keys.includes(address))
            .reverse()
            .slice(0, limit);
    }

    /** The transactions after number `after` in the order of their execution, with their transfers. */
    ledger(after) {
        return this.#transactions()
            .filter(({ seq }) => seq > after)
            .map(({ seq, signature, slot, err, message }) => ({
                seq,
                signature,
                slot,
                err,
                transfers: message.instructions.map((item) => transferIn(item, message.keys)).filter(Boolean),
            }));
    }

    #transactions() {
        return [...this.#entries.values()].filter(({ message }) => message !== undefined);
    }
}
