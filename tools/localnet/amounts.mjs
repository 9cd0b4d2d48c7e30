import { isAddress } from '@solana/kit';
import { BadInput } from './errors.mjs';

export const U64_MAX = 2n ** 64n - 1n;
export const SOL_DECIMALS = 9;
export const USDC_DECIMALS = 6;

/** Parses a 64-bit integer from a JSON number or, above 2^53, from digits in a string. */
export function parseU64(value, name) {
    const fits = typeof value === 'number' ? Number.isSafeInteger(value) && value >= 0
        : typeof value === 'string' && /^\d{1,20}$/.test(value);
    if (!fits || BigInt(value) > U64_MAX) {
        throw new BadInput(`${name} must be an integer from 0 to 2^64 - 1`);
    }
    return BigInt(value);
}

/** Converts "12.5" or 12.5 to units of 10^-decimals exactly, without binary fractions. */
export function parseDecimal(value, decimals, name) {
    const text = ['number', 'string'].includes(typeof value) ? String(value) : '';
    const match = /^(\d{1,20})(?:\.(\d+))?$/.exec(text);
    const fraction = match?.[2] ?? '';
    if (!match || fraction.length > decimals) {
        throw new BadInput(`${name} must be a decimal number with at most ${decimals} places`);
    }
    const units = BigInt(match[1] + fraction.padEnd(decimals, '0'));
    if (units > U64_MAX) {
        throw new BadInput(`${name} is too large`);
    }
    return units;
}

/** Converts units of 10^-decimals to the shortest decimal text. */
export function formatDecimal(units, decimals) {
    const digits = units.toString().padStart(decimals + 1, '0');
    const fraction = digits.slice(-decimals).replace(/0+$/, '');
    return digits.slice(0, -decimals) + (fraction && `.${fraction}`);
}

export function parseAddress(value, name = 'address') {
    if (typeof value !== 'string' || !isAddress(value)) {
        throw new BadInput(`${name} must be a Base58 address of 32 bytes`);
    }
    return value;
}
