/** SPL token accounts in a runtime: written in their real layout, returned in a node's format. */

import { lamports, unwrapOption } from '@solana/kit';
import {
    AccountState, findAssociatedTokenPda, getMintDecoder, getMintEncoder, getMintSize, getTokenDecoder,
    getTokenEncoder, getTokenSize, TOKEN_PROGRAM_ADDRESS,
} from '@solana-program/token';
import { formatDecimal, USDC_DECIMALS } from './amounts.mjs';
import { BadInput } from './errors.mjs';

/** The rent epoch of every account on a live cluster: rent is never due again. */
const RENT_EXEMPT_EPOCH = 18446744073709551615n;
const STATE_NAMES = {
    [AccountState.Uninitialized]: 'uninitialized',
    [AccountState.Initialized]: 'initialized',
    [AccountState.Frozen]: 'frozen',
};

function place(svm, address, data) {
    svm.setAccount({
        address,
        data: new Uint8Array(data),
        executable: false,
        lamports: lamports(svm.minimumBalanceForRentExemption(BigInt(data.length))),
        programAddress: TOKEN_PROGRAM_ADDRESS,
        space: BigInt(data.length),
    });
}

export function createMint(svm, mint) {
    place(svm, mint, getMintEncoder().encode({
        mintAuthority: null,
        supply: 10n ** 16n,
        decimals: USDC_DECIMALS,
        isInitialized: true,
        freezeAuthority: null,
    }));
}

export function isMint(svm, address) {
    const account = svm.getAccount(address);
    return account.exists && account.programAddress === TOKEN_PROGRAM_ADDRESS
        && account.data.length === getMintSize();
}

/**
 * Sets the amount of `mint` in the owner's associated token account, or in the account `at` for
 * owners with several accounts. A null amount removes the account. Returns the account's address.
 */
export async function setTokenBalance(svm, { mint, owner, amount, at }) {
    const [associated] = await findAssociatedTokenPda({ mint, owner, tokenProgram: TOKEN_PROGRAM_ADDRESS });
    const address = at ?? associated;
    const existing = svm.getAccount(address);
    if (existing.exists && (existing.programAddress !== TOKEN_PROGRAM_ADDRESS || isMint(svm, address))) {
        throw new BadInput('account is in use and is not a token account');
    }
    if (amount === null) {
        if (existing.exists) {
            svm.setAccount({ ...existing, lamports: lamports(0n), data: new Uint8Array(0), space: 0n });
        }
        return address;
    }
    place(svm, address, getTokenEncoder().encode({
        mint,
        owner,
        amount,
        delegate: null,
        state: AccountState.Initialized,
        isNative: null,
        delegatedAmount: 0n,
        closeAuthority: null,
    }));
    return address;
}

/** Returns the token accounts of `owner`, for one mint or all, sorted by address. */
export function tokenAccountsOf(svm, owner, mint) {
    return svm.getProgramAccounts(TOKEN_PROGRAM_ADDRESS)
        .filter((account) => account.data.length === getTokenSize())
        .map((account) => ({ ...account, token: getTokenDecoder().decode(account.data) }))
        .filter(({ token }) => token.owner === owner && (mint === undefined || token.mint === mint))
        .sort((left, right) => (left.address < right.address ? -1 : 1));
}

function tokenAmount(units) {
    const text = formatDecimal(units, USDC_DECIMALS);
    return { amount: units.toString(), decimals: USDC_DECIMALS, uiAmount: Number(text), uiAmountString: text };
}

function parsedInfo(token) {
    const delegate = unwrapOption(token.delegate);
    const closeAuthority = unwrapOption(token.closeAuthority);
    return {
        ...(closeAuthority && { closeAuthority }),
        ...(delegate && { delegate, delegatedAmount: tokenAmount(token.delegatedAmount) }),
        isNative: unwrapOption(token.isNative) !== null,
        mint: token.mint,
        owner: token.owner,
        state: STATE_NAMES[token.state],
        tokenAmount: tokenAmount(token.amount),
    };
}

function parsedMint(mint) {
    return {
        decimals: mint.decimals,
        freezeAuthority: unwrapOption(mint.freezeAuthority),
        isInitialized: mint.isInitialized,
        mintAuthority: unwrapOption(mint.mintAuthority),
        supply: mint.supply.toString(),
    };
}

/** What a node makes of an account's data; null where it knows no parser. */
function parsedData({ programAddress, data }) {
    if (programAddress !== TOKEN_PROGRAM_ADDRESS) {
        return null;
    }
    if (data.length === getTokenSize()) {
        return { info: parsedInfo(getTokenDecoder().decode(data)), type: 'account' };
    }
    return data.length === getMintSize() ? { info: parsedMint(getMintDecoder().decode(data)), type: 'mint' } : null;
}

/** Formats the value of a getAccountInfo reply. Data that is not parsed is in Base64, only a slice if asked for. */
export function describeAccount(account, encoding, { offset, length } = { offset: 0, length: Infinity }) {
    const parsed = encoding === 'jsonParsed' ? parsedData(account) : null;
    const space = BigInt(account.data.length);
    return {
        data: parsed ? { parsed, program: 'spl-token', space }
            : [Buffer.from(account.data.slice(offset, offset + length)).toString('base64'), 'base64'],
        executable: account.executable,
        lamports: account.lamports,
        owner: account.programAddress,
        rentEpoch: RENT_EXEMPT_EPOCH,
        space,
    };
}

/** Formats one element of a getTokenAccountsByOwner reply. */
export function describeTokenAccount(account, encoding) {
    return { account: describeAccount(account, encoding), pubkey: account.address };
}
