/**
 * A strict parser of the wire format of transactions. The runtime aborts the whole process on bytes
 * that it cannot decode, so that all input must pass this parser first.
 */

import { getAddressDecoder, getBase58Decoder } from '@solana/kit';
import { BadInput } from './errors.mjs';

export const MAX_TRANSACTION_BYTES = 1232;

class Reader {
    #bytes;
    #at = 0;

    constructor(bytes) {
        this.#bytes = bytes;
    }

    get position() {
        return this.#at;
    }

    get atEnd() {
        return this.#at === this.#bytes.length;
    }

    take(count) {
        if (this.#at + count > this.#bytes.length) {
            throw new BadInput('unexpected end of the transaction');
        }
        this.#at += count;
        return this.#bytes.subarray(this.#at - count, this.#at);
    }

    byte() {
        return this.take(1)[0];
    }

    /** Reads a length in groups of seven bits, at most three bytes; it must have its shortest form. */
    length() {
        let value = 0;
        for (let index = 0; index < 3; index += 1) {
            const byte = this.byte();
            value += (byte & 0x7f) << (7 * index);
            if (byte < 0x80) {
                if ((byte === 0 && index > 0) || value > 0xffff) {
                    break;
                }
                return value;
            }
        }
        throw new BadInput('a length is not in its compact form');
    }

    list(readItem) {
        const items = [];
        for (let left = this.length(); left > 0; left -= 1) {
            items.push(readItem());
        }
        return items;
    }
}

function readMessage(reader) {
    const first = reader.byte();
    const versioned = first >= 0x80;
    if (versioned && first !== 0x80) {
        throw new BadInput(`message version ${first & 0x7f} is not supported`);
    }
    const requiredSignatures = versioned ? reader.byte() : first;
    const readonlySigned = reader.byte();
    const readonlyUnsigned = reader.byte();
    const keys = reader.list(() => getAddressDecoder().decode(reader.take(32)));
    const blockhash = getBase58Decoder().decode(reader.take(32));
    const instructions = reader.list(() => {
        const program = reader.byte();
        const accounts = [...reader.take(reader.length())];
        const data = reader.take(reader.length());
        return { program, accounts, data };
    });
    const lookups = versioned
        ? reader.list(() => {
            reader.take(32);
            const writable = reader.length();
            reader.take(writable);
            const readonly = reader.length();
            reader.take(readonly);
            return writable + readonly;
        })
        : [];
    return {
        versioned, requiredSignatures, readonlySigned, readonlyUnsigned, keys, blockhash, instructions, lookups,
    };
}

/**
 * Checks the same consistency rules as a node: counts must match and every index must refer to an
 * account.
 */
function checkConsistency(message, signatureCount) {
    const { requiredSignatures, readonlySigned, readonlyUnsigned, keys, instructions, lookups } = message;
    const accountCount = lookups.reduce((sum, count) => sum + count, keys.length);
    const consistent = signatureCount === requiredSignatures
        && readonlySigned < requiredSignatures
        && requiredSignatures + readonlyUnsigned <= keys.length
        && accountCount <= 256
        && lookups.every((count) => count > 0)
        && instructions.every(({ program, accounts }) => program > 0 && program < keys.length
            && accounts.every((index) => index < accountCount));
    // Signatures are passed on by signer address, so that two signers must not share an address.
    const signers = keys.slice(0, requiredSignatures);
    if (!consistent || new Set(signers).size !== signers.length) {
        throw new BadInput('Transaction failed to sanitize accounts offsets correctly');
    }
}

/**
 * Returns { transaction, message, signature }: the transaction in the runtime's format, its message
 * in parts, and its first signature as text. Throws BadInput on malformed input.
 */
export function decodeTransaction(bytes) {
    if (bytes.length > MAX_TRANSACTION_BYTES) {
        throw new BadInput(`transaction too large: ${bytes.length} bytes (max: ${MAX_TRANSACTION_BYTES} bytes)`);
    }
    const reader = new Reader(bytes);
    const signatures = reader.list(() => reader.take(64));
    const messageStart = reader.position;
    const message = readMessage(reader);
    if (!reader.atEnd) {
        throw new BadInput('bytes left over after the transaction');
    }
    checkConsistency(message, signatures.length);
    return {
        transaction: {
            messageBytes: bytes.slice(messageStart),
            signatures: Object.fromEntries(signatures.map((signature, index) => [message.keys[index], signature])),
        },
        message,
        signature: getBase58Decoder().decode(signatures[0]),
    };
}
