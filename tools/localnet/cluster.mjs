import { getBase58Decoder, lamports } from '@solana/kit';
import { SYSTEM_PROGRAM_ADDRESS } from '@solana-program/system';
import { FailedTransactionMetadata, LiteSVM } from 'litesvm';
import { U64_MAX } from './amounts.mjs';
import { BlockhashWindow, WINDOW_SLOTS } from './blockhashes.mjs';
import { BadInput } from './errors.mjs';
import { createMint, isMint, setTokenBalance, tokenAccountsOf } from './tokens.mjs';
import { describeFailure, namedError } from './transaction_errors.mjs';
import { decodeTransaction } from './wire.mjs';

export const USDC_MINTS = {
    mainnet: 'EPjFWdd5AufqSSqeM2qN1xzybapC8G4wEGGkZwyTDt1v',
    devnet: '4zMMC9srt5Ri5X14GAgXhaHii3GnPAEERYPJgZJDncDU',
};

/** How many transactions the cluster remembers, for their status and against replays. */
const REMEMBERED_TRANSACTIONS = 10_000;
/** A slot this far behind the newest counts as final. */
const FINAL_AFTER_SLOTS = 32n;

/** One cluster: a runtime of its own, its slot clock and the fate of the transactions sent to it. */
export class Cluster {
    #svm = new LiteSVM()
        .withBlockhashCheck(false) // BlockhashWindow does it
        .withTransactionHistory(BigInt(REMEMBERED_TRANSACTIONS));
    #window;
    #statuses = new Map();
    #now;

    constructor(name, { slotMs = 400, now = Date.now } = {}) {
        this.name = name;
        this.usdcMint = USDC_MINTS[name];
        this.#now = now;
        this.#window = new BlockhashWindow({ firstSlot: this.#svm.getClock().slot, slotMs, now });
        createMint(this.#svm, this.usdcMint);
    }

    get slot() {
        return this.#window.slot;
    }

    latestBlockhash() {
        const { blockhash, slot } = this.#window.latest();
        return { blockhash, lastValidBlockHeight: slot + WINDOW_SLOTS };
    }

    expireBlockhashes() {
        this.#window.expireAll();
    }

    balance(address) {
        return this.#svm.getBalance(address) ?? 0n;
    }

    setBalance(address, amount) {
        const existing = this.#svm.getAccount(address);
        if (existing.exists && existing.programAddress !== SYSTEM_PROGRAM_ADDRESS) {
            throw new BadInput('address belongs to a program, its balance is not set by hand');
        }
        this.#svm.setAccount({
            address,
            data: new Uint8Array(0),
            executable: false,
            lamports: lamports(amount),
            programAddress: SYSTEM_PROGRAM_ADDRESS,
            space: 0n,
        });
    }

    setUsdc(owner, amount, at) {
        return setTokenBalance(this.#svm, { mint: this.usdcMint, owner, amount, at });
    }

    isMint(address) {
        return isMint(this.#svm, address);
    }

    tokenAccounts(owner, mint) {
        return tokenAccountsOf(this.#svm, owner, mint);
    }

    usdcUnits(owner) {
        return this.tokenAccounts(owner, this.usdcMint).reduce((sum, { token }) => sum + token.amount, 0n);
    }

    /** Sends new lamports to an address. Returns the signature, or throws BadInput. */
    airdrop(address, amount) {
        if (this.balance(address) + amount > U64_MAX) {
            throw new BadInput('the balance would not fit 64 bits');
        }
        this.#setClock();
        // The runtime signs the airdrop with its own newest blockhash: without a fresh one a second
        // airdrop of the same amount would be the same transaction again.
        this.#svm.expireBlockhash();
        const result = this.#svm.airdrop(address, lamports(amount));
        if (result === null || result instanceof FailedTransactionMetadata) {
            throw new BadInput(result ? describeFailure(result).text : 'airdrop refused');
        }
        const signature = getBase58Decoder().decode(result.signature());
        this.#remember(signature, null);
        return signature;
    }

    /**
     * Runs a transaction given in its wire form. Returns { signature } and, when the preflight
     * refused it, `failure` with { err, text, logs, unitsConsumed }. Malformed bytes throw BadInput.
     */
    submit(bytes, { skipPreflight = false } = {}) {
        const { transaction, blockhash, signature } = decodeTransaction(bytes);
        this.#setClock();
        const failure = this.#preflight(transaction, blockhash);
        // Without the preflight a node takes anything it can read and says nothing of what becomes
        // of it; only what gets as far as executing leaves a trace and costs its fee.
        const executes = !failure || (skipPreflight && failure.executed);
        if (executes) {
            const result = this.#svm.sendTransaction(transaction);
            this.#remember(signature, result instanceof FailedTransactionMetadata ? describeFailure(result).err : null);
        }
        return failure && !skipPreflight ? { signature, failure } : { signature };
    }

    status(signature) {
        const known = this.#statuses.get(signature);
        if (!known) {
            return null;
        }
        const depth = this.slot - known.slot;
        const final = depth >= FINAL_AFTER_SLOTS;
        return {
            slot: known.slot,
            confirmations: final ? null : depth,
            err: known.err,
            status: known.err === null ? { Ok: null } : { Err: known.err },
            confirmationStatus: final ? 'finalized' : 'confirmed',
        };
    }

    get summary() {
        return {
            slot: this.slot,
            usdcMint: this.usdcMint,
            acceptedBlockhashes: this.#window.size,
            transactions: this.#statuses.size,
            latestSignature: [...this.#statuses.keys()].at(-1) ?? null,
        };
    }

    #preflight(transaction, blockhash) {
        const result = this.#svm.simulateTransaction(transaction);
        const refused = result instanceof FailedTransactionMetadata ? describeFailure(result) : null;
        // In the order of a node: the signature first, then the age, then everything else.
        if (refused?.err !== 'SignatureFailure' && !this.#window.accepts(blockhash)) {
            return { ...namedError('BlockhashNotFound'), logs: [], unitsConsumed: 0n, executed: false };
        }
        if (!refused) {
            return null;
        }
        const meta = result.meta();
        return {
            ...refused,
            logs: meta.logs(),
            unitsConsumed: meta.computeUnitsConsumed(),
            executed: typeof refused.err === 'object' && 'InstructionError' in refused.err,
        };
    }

    #remember(signature, err) {
        this.#statuses.set(signature, { slot: this.slot, err });
        if (this.#statuses.size > REMEMBERED_TRANSACTIONS) {
            this.#statuses.delete(this.#statuses.keys().next().value);
        }
    }

    /** Programs read slot and time from the runtime's clock account. */
    #setClock() {
        const clock = this.#svm.getClock();
        clock.slot = this.slot;
        clock.unixTimestamp = BigInt(Math.floor(this.#now() / 1000));
        this.#svm.setClock(clock);
    }
}
