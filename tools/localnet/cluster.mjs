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

/** The number of transactions kept for status queries and for the detection of replays. */
const REMEMBERED_TRANSACTIONS = 10_000;
/** A slot is finalized when the newest slot is this many slots later. */
const FINAL_AFTER_SLOTS = 32n;

/** One cluster: a separate runtime, its slot clock and the results of the transactions sent to it. */
export class Cluster {
    #svm = new LiteSVM()
        .withBlockhashCheck(false) // BlockhashWindow checks it
        .withTransactionHistory(BigInt(REMEMBERED_TRANSACTIONS));
    #window;
    #statuses = new Map();

    constructor(name, { slotMs = 400 } = {}) {
        this.name = name;
        this.usdcMint = USDC_MINTS[name];
        this.#window = new BlockhashWindow({ firstSlot: this.#svm.getClock().slot, slotMs });
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

    /** Creates lamports at an address. Returns the signature, or throws BadInput. */
    airdrop(address, amount) {
        if (this.balance(address) + amount > U64_MAX) {
            throw new BadInput('the balance would not fit 64 bits');
        }
        this.#setClock();
        // The runtime signs the airdrop with its newest blockhash. Without a new blockhash, a second airdrop
        // of the same amount would be an identical transaction.
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
     * Executes a transaction in wire format. Returns { signature } and, if the preflight check
     * rejected it, `failure` with { err, text, logs, unitsConsumed }. Throws BadInput on malformed
     * bytes.
     */
    submit(bytes, { skipPreflight = false } = {}) {
        const { transaction, blockhash, signature } = decodeTransaction(bytes);
        this.#setClock();
        const failure = this.#preflight(transaction, blockhash);
        // Without the preflight check a node accepts every readable transaction and does not report its
        // result; only a transaction that starts to execute is recorded and costs a fee.
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
        // Checked in the same order as by a node: the signature, the age, then everything else.
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

    /** Updates the runtime's clock account, from which programs read slot and time. */
    #setClock() {
        const clock = this.#svm.getClock();
        clock.slot = this.slot;
        clock.unixTimestamp = BigInt(Math.floor(Date.now() / 1000));
        this.#svm.setClock(clock);
    }
}
