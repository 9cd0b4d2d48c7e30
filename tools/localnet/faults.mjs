/** Faults that a test can inject: the requests they apply to, how often, and their effect on the reply. */

import { BadInput } from './errors.mjs';
import { isObject } from './json.mjs';
import { priceSources } from './prices.mjs';
import { methodNames } from './rpc.mjs';

const MAX_DELAY_MS = 120_000;
const MAX_OVERSIZE_BYTES = 64 * 1024 * 1024;
const DEFAULT_OVERSIZE_BYTES = 8 * 1024 * 1024;

function integer(low, high) {
    return (value) => Number.isInteger(value) && value >= low && value <= high
        || `an integer from ${low} to ${high}`;
}

function text(value) {
    return typeof value === 'string' || 'a string';
}

function headerText(value) {
    return typeof value === 'string' && /^[\x20-\x7e]+$/.test(value) || 'printable text';
}

function flag(value) {
    return typeof value === 'boolean' || 'true or false';
}

/**
 * Each kind of fault with its settings and its effect on a reply { status, type, body }. `run`
 * executes the call and returns the true reply; a kind that does not call `run` prevents the call.
 * The effect is a new reply: `cut` closes the connection after half of the body, `drop` sends
 * nothing, `location` redirects.
 */
const kinds = {
    latency: { settings: { ms: integer(0, MAX_DELAY_MS) }, required: ['ms'] },
    drop: {
        apply: () => ({ drop: true, status: null }),
    },
    'drop-after': {
        apply: async (run) => {
            await run();
            return { drop: true, status: null };
        },
    },
    status: {
        settings: { status: integer(200, 599), body: text, contentType: headerText, keepBody: flag },
        required: ['status'],
        apply: async (run, { status, body = `status ${status}`, contentType = 'text/plain', keepBody }) => (
            keepBody ? { ...await run(), status } : { status, type: contentType, body }),
    },
    'wrong-json': {
        apply: () => ({ status: 200, type: 'application/json', body: '{"unexpected":[true]}' }),
    },
    'not-json': {
        apply: () => ({ status: 200, type: 'text/html', body: '<!doctype html><title>Maintenance</title>' }),
    },
    truncated: {
        apply: async (run) => ({ ...await run(), cut: true }),
    },
    oversize: {
        settings: { bytes: integer(1, MAX_OVERSIZE_BYTES) },
        // The true reply with one huge member in front, so that only its size is wrong.
        apply: async (run, { bytes = DEFAULT_OVERSIZE_BYTES }) => {
            const answer = await run();
            const rest = answer.body.startsWith('{"') ? `,${answer.body.slice(1)}` : '}';
            return { ...answer, body: `{"padding":"${'x'.repeat(bytes)}"${rest}` };
        },
    },
    'rpc-error': {
        settings: { code: integer(-32_768, 32_767), message: text, data: () => true },
        apply: (run, { code = -32603, message = 'Internal error', data }, { rpcError }) => ({
            status: 200, type: 'application/json', body: rpcError({ code, message, data }),
        }),
    },
    redirect: {
        settings: { status: integer(300, 399), location: headerText },
        required: ['location'],
        apply: (run, { status = 307, location }) => ({ status, type: 'text/plain', body: '', location }),
    },
    body: {
        settings: { body: text, bodyBase64: text, status: integer(200, 599), contentType: headerText },
        apply: (run, { body = '', bodyBase64, status = 200, contentType = 'application/json' }) => ({
            status,
            type: contentType,
            body: bodyBase64 === undefined ? body : Buffer.from(bodyBase64, 'base64'),
        }),
    },
};

const targets = ['*', 'proxy', 'explorer', ...priceSources, ...methodNames];

function checkFault(fault) {
    if (!isObject(fault)) {
        throw new BadInput('a fault must be an object');
    }
    const { match, kind, count, cluster, ...settings } = fault;
    if (!targets.includes(match)) {
        throw new BadInput(`match must be one of ${targets.join(', ')}`);
    }
    if (!Object.hasOwn(kinds, kind)) {
        throw new BadInput(`kind must be one of ${Object.keys(kinds).join(', ')}`);
    }
    if (count !== undefined && integer(1, 1_000_000)(count) !== true) {
        throw new BadInput('count must be a positive integer; without it the fault applies until cleared');
    }
    if (cluster !== undefined && !['mainnet', 'devnet'].includes(cluster)) {
        throw new BadInput('cluster must be mainnet or devnet');
    }
    const { settings: known = {}, required = [] } = kinds[kind];
    for (const [name, value] of Object.entries(settings)) {
        const verdict = Object.hasOwn(known, name) ? known[name](value) : 'absent';
        if (verdict !== true) {
            throw new BadInput(`${name} must be ${verdict} in a fault of kind ${kind}`);
        }
    }
    const missing = required.find((name) => settings[name] === undefined);
    if (missing) {
        throw new BadInput(`a fault of kind ${kind} needs ${missing}`);
    }
    return { match, kind, count: count ?? null, cluster: cluster ?? null, settings };
}

export class Faults {
    #active = [];
    #nextId = 1;

    /** Adds a fault and returns its id. Throws BadInput on an invalid description. */
    add(fault) {
        const id = this.#nextId;
        this.#active.push({ id, ...checkFault(fault), applied: 0 });
        this.#nextId += 1;
        return id;
    }

    clear() {
        this.#active = [];
    }

    get summary() {
        return this.#active;
    }

    /**
     * Returns the faults for a request known by `names`: at most one delay and one other fault, the
     * oldest first. Returned faults count as used.
     */
    take(names, cluster) {
        const fits = (fault) => (fault.match === '*' || names.includes(fault.match))
            && (fault.cluster === null || fault.cluster === cluster);
        const delay = this.#active.find((fault) => fits(fault) && fault.kind === 'latency');
        const effect = this.#active.find((fault) => fits(fault) && fault.kind !== 'latency');
        for (const fault of [delay, effect]) {
            if (fault) {
                fault.applied += 1;
            }
        }
        this.#active = this.#active.filter(({ count, applied }) => count === null || applied < count);
        return { delayMs: delay?.settings.ms ?? 0, effect: effect ?? null };
    }
}

/** Returns the reply to send: the true one from `run`, or the one that the fault produces. */
export async function answerUnder(effect, run, context) {
    return effect ? kinds[effect.kind].apply(run, effect.settings, context) : run();
}
