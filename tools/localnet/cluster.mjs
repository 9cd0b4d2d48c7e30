import { getBase58Decoder, lamports } from '@solana/kit';
import { SYSTEM_PROGRAM_ADDRESS } from '@solana-program/system';
import { FailedTransactionMetadata, LiteSVM } from 'litesvm';
import { U64_MAX } from './amounts.mjs';
import { BlockhashWindow, WINDOW_SLOTS } from './blockhashes.mjs';
import { BadInput } from './errors.mjs';
import { History } from './history.mjs';
import { createMint, isMint, setTokenBalance, tokenAccountsOf } from './tokens.mjs';
import { describeFailure, namedError } from './transaction_errors.mjs';
import { decodeTransaction } from './wire.mjs';

export const USDC_MINTS = {
    mainnet: 'EPjFWdd5AufqSSqeM2qN1xzybapC8G4wEGGkZwyTDt1v',
    devnet: '4zMMC9srt5Ri5X14GAgXhaHii3GnPAEERYPJgZJDncDU',
};

/** The number of transactions kept for queries and for the detection of replays. */
const REMEMBERED_TRANSACTIONS = 10_000;
/** A slot is finalized when the newest slot is this many slots later. */
const FINAL_AFTER_SLOTS = 32n;
/** The number of the first slot; some slots are final already, as on a live cluster. */
const FIRST_SLOT = 1000n;

function secondsNow() {
    return Math.floor(Date.now() / 1000);
}

/** How many slots pass until a slot has this commitment, which is finalized by default, as on a node. */
function slotsUntil(commitment) {
    return (commitment ?? 'finalized') === 'finalized' ? FINAL_AFTER_SLOTS : 0n;
}

/** One cluster: a separate runtime, its slot clock and the results of the transactions sent to it. */
export class Cluster {
    #svm = new LiteSVM()
        .withBlockhashCheck(false) // BlockhashWindow checks it
        .withTransactionHistory(BigInt(REMEMBERED_TRANSACTIONS));
    #window;
    #history = new History(REMEMBERED_TRANSACTIONS);

    constructor(name, { slotMs = 400 } = {}) {
        this.name = name;
        this.usdcMint = USDC_MINTS[name];
        this.#window = new BlockhashWindow({ firstSlot: FIRST_SLOT, slotMs });
        createMint(this.#svm, this.usdcMint);
    }

    get slot() {
        return this.#window.slot;
    }

    /** Slot and block height are the same number; a finalized block is older than the newest one. */
    blockHeight(commitment) {
        return this.slot - slotsUntil(commitment);
    }

    latestBlockhash(commitment) {
        const { blockhash, slot } = this.#window.latest(slotsUntil(commitment));
        return { blockhash, lastValidBlockHeight: slot + WINDOW_SLOTS };
    }

    isBlockhashValid(blockhash) {
        return this.#window.accepts(blockhash);
    }

    expireBlockhashes() {
        this.#window.expireAll();
    }

    advanceSlots(slots) {
        this.#window.advance(slots);
    }

    /** An account as the runtime stores it, or null: an account without lamports does not exist. */
    account(address) {
        const account = this.#svm.getAccount(address);
        return account.exists && account.lamports > 0n ? account : null;
    }

    rentExemptMinimum(size) {
        return this.#svm.minimumBalanceForRentExemption(size);
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
        this.#history.add({ signature, slot: this.slot, err: null });
        return signature;
    }

    /**
     * Executes a transaction in wire format. Returns { signature } and, if the preflight check
     * rejected it, `failure` with { err, text, logs, unitsConsumed }. Throws BadInput on malformed
     * bytes.
     */
    submit(bytes, { skipPreflight = false } = {}) {
        const { transaction, message, signature } = decodeTransaction(bytes);
        this.#setClock();
        const failure = this.#preflight(transaction, message.blockhash);
        // Without the preflight check a node accepts every readable transaction and does not report its
        // result; only a transaction that starts to execute is recorded and costs a fee.
        const executes = !failure || (skipPreflight && failure.executed);
        if (executes) {
            const balances = () => message.keys.map((key) => this.balance(key));
            const preBalances = balances();
            const result = this.#svm.sendTransaction(transaction);
            this.#history.add({
                signature,
                slot: this.slot,
                err: result instanceof FailedTransactionMetadata ? describeFailure(result).err : null,
                blockTime: secondsNow(),
                message,
                preBalances,
                postBalances: balances(),
            });
        }
        return failure && !skipPreflight ? { signature, failure } : { signature };
    }

    status(signature) {
        const known = this.#history.find(signature);
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

    /** The executed transaction with this signature, or null. */
    transaction(signature) {
        return this.#history.findTransaction(signature);
    }

    /** The latest executed transactions that name `address`, newest first, at most `limit`. */
    transactionsOf(address, options) {
        return this.#history.transactionsOf(address, options);
    }

    /** Every executed transaction after number `after`, in order. */
    ledger(after) {
        return this.#history.ledger(after);
    }

    get summary() {
        return {
            slot: this.slot,
            usdcMint: this.usdcMint,
            acceptedBlockhashes: this.#window.size,
            transactions: this.#history.size,
            latestSignature: this.#history.latestSignature,
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

    /** Updates the runtime's clock account, from which programs read slot and time. */
    #setClock() {
        const clock = this.#svm.getClock();
        clock.slot = this.slot;
        clock.unixTimestamp = BigInt(secondsNow());
        this.#svm.setClock(clock);
    }
}
