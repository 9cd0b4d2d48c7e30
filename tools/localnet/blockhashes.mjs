import { randomBytes } from 'node:crypto';
import { getBase58Decoder } from '@solana/kit';

/** A transaction may name any blockhash of this many latest slots. */
export const WINDOW_SLOTS = 150n;

/**
 * The slot clock of a cluster and the blockhashes it has given out. The runtime itself knows only
 * its newest blockhash, which would turn every transfer that crosses a slot boundary into a failure.
 * Slots follow the wall clock and hashes are made when asked for, so an idle cluster does nothing.
 */
export class BlockhashWindow {
    #issued = new Map();
    #firstSlot;
    #startedAt;
    #skipped = 0n;
    #slotMs;
    #now;

    constructor({ firstSlot, slotMs, now }) {
        this.#firstSlot = firstSlot;
        this.#slotMs = slotMs;
        this.#now = now;
        this.#startedAt = now();
    }

    get slot() {
        const elapsed = Math.max(0, this.#now() - this.#startedAt);
        return this.#firstSlot + this.#skipped + BigInt(Math.floor(elapsed / this.#slotMs));
    }

    get size() {
        this.#prune();
        return this.#issued.size;
    }

    latest() {
        this.#prune();
        const slot = this.slot;
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

    /** Moves the clock on until no blockhash given out so far is accepted any more. */
    expireAll() {
        this.#skipped += WINDOW_SLOTS + 1n;
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
