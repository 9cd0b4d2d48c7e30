import { randomBytes } from 'node:crypto';
import { getBase58Decoder } from '@solana/kit';

/** A transaction may use a blockhash of any of this many latest slots. */
export const WINDOW_SLOTS = 150n;

/**
 * The slot clock of a cluster and the blockhashes that it has returned. The runtime itself accepts
 * only its newest blockhash, so that every transfer across a slot boundary would fail. Slots follow
 * the wall clock and hashes are created on request, so that an idle cluster does nothing.
 */
export class BlockhashWindow {
    #issued = new Map();
    #firstSlot;
    #startedAt;
    #skipped = 0n;
    #slotMs;

    constructor({ firstSlot, slotMs }) {
        this.#firstSlot = firstSlot;
        this.#slotMs = slotMs;
        this.#startedAt = Date.now();
    }

    /** The newest slot. */
    get slot() {
        const elapsed = Math.max(0, Date.now() - this.#startedAt);
        return this.#firstSlot + this.#skipped + BigInt(Math.floor(elapsed / this.#slotMs));
    }

    get size() {
        this.#prune();
        return this.#issued.size;
    }

    /** The blockhash of the slot that is `age` slots old. */
    latest(age = 0n) {
        this.#prune();
        const slot = this.slot - age;
        const known = [...this.#issued].find(([, issuedAt]) => issuedAt === slot);
        if (known) {
            return { blockhash: known[0], slot };
        }
        const blockhash = getBase58Decoder().decode(randomBytes(32));
        this.#issued.set(blockhash, slot);
        return { blockhash, slot };
    }

    accepts(blockhash) {
        this.#prune();
        return this.#issued.has(blockhash);
    }

    /** Moves the clock forward, beside the time that passes. */
    advance(slots) {
        this.#skipped += slots;
    }

    /** Advances the clock until no blockhash returned so far is accepted any more. */
    expireAll() {
        this.advance(WINDOW_SLOTS + 1n);
    }

    #prune() {
        const oldest = this.slot - WINDOW_SLOTS;
        for (const [blockhash, issuedAt] of this.#issued) {
            if (issuedAt < oldest) {
                this.#issued.delete(blockhash);
            }
        }
    }
}
