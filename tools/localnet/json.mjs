/**
 * Converts a value to JSON text. Unlike JSON.stringify it writes a BigInt as a plain number: nodes
 * send 64-bit integers (lamports, rentEpoch) that a double cannot represent, and clients must
 * handle them.
 */
export function toJson(value) {
    if (typeof value === 'bigint') {
        return value.toString();
    }
    if (Array.isArray(value)) {
        return `[${value.map((item) => toJson(item === undefined ? null : item)).join(',')}]`;
    }
    if (value !== null && typeof value === 'object') {
        const members = Object.entries(value).filter(([, member]) => member !== undefined);
        return `{${members.map(([key, member]) => `${JSON.stringify(key)}:${toJson(member)}`).join(',')}}`;
    }
    return JSON.stringify(value);
}

/** True if arrays and objects are nested at most `limit` levels deep, so that recursion is safe. */
export function nestsWithin(value, limit) {
    if (value === null || typeof value !== 'object') {
        return true;
    }
    return limit > 0 && Object.values(value).every((member) => nestsWithin(member, limit - 1));
}

export function isObject(value) {
    return value !== null && typeof value === 'object' && !Array.isArray(value);
}
