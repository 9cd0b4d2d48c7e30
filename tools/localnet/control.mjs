/** The control interface, with which demos and tests set balances, prices and faults, and read the log. */

import { formatDecimal, parseAddress, parseDecimal, parseU64, SOL_DECIMALS, USDC_DECIMALS } from './amounts.mjs';
import { BadInput } from './errors.mjs';
import { isObject, toJson } from './json.mjs';

const MAX_ADVANCE_SLOTS = 1_000_000n;

function clusterOf(net, name) {
    if (!Object.hasOwn(net.clusters, name ?? '')) {
        throw new BadInput('cluster must be mainnet or devnet');
    }
    return net.clusters[name];
}

function holdings(cluster, address) {
    return {
        lamports: cluster.balance(address),
        sol: formatDecimal(cluster.balance(address), SOL_DECIMALS),
        usdc: formatDecimal(cluster.usdcUnits(address), USDC_DECIMALS),
    };
}

function state(net, query) {
    const address = query.get('address');
    const clusters = Object.entries(net.clusters).map(([name, cluster]) => [name, {
        ...cluster.summary,
        ...(address !== null && holdings(cluster, parseAddress(address))),
    }]);
    return { clusters: Object.fromEntries(clusters), market: net.market.summary, faults: net.faults.summary };
}

function log(net, query) {
    const after = query.get('after') ?? '0';
    return { entries: net.log.entries({ after: Number(parseU64(after, 'after')), name: query.get('name') ?? undefined }) };
}

function ledger(net, query) {
    const after = Number(parseU64(query.get('after') ?? '0', 'after'));
    return { entries: clusterOf(net, query.get('cluster')).ledger(after) };
}

function chosenClusters(net, name) {
    return name === undefined ? Object.values(net.clusters) : [clusterOf(net, name)];
}

/** The action of each control request, and the members that its body may have. */
const routes = {
    'GET /control/state': { run: (net, { query }) => state(net, query) },
    'GET /control/log': { run: (net, { query }) => log(net, query) },
    'GET /control/ledger': { run: (net, { query }) => ledger(net, query) },
    'POST /control/clear-log': { run: (net) => net.log.clear() },
    'POST /control/balance': {
        members: ['cluster', 'address', 'lamports'],
        run: (net, { body }) => {
            const amount = parseU64(body.lamports, 'lamports');
            clusterOf(net, body.cluster).setBalance(parseAddress(body.address), amount);
        },
    },
    'POST /control/usdc': {
        members: ['cluster', 'address', 'amount', 'account'],
        run: async (net, { body }) => {
            const amount = body.amount === null ? null : parseDecimal(body.amount, USDC_DECIMALS, 'amount');
            const at = body.account === undefined ? undefined : parseAddress(body.account, 'account');
            const cluster = clusterOf(net, body.cluster);
            return { account: await cluster.setUsdc(parseAddress(body.address), amount, at) };
        },
    },
    'POST /control/price': {
        members: ['price', 'change', 'chart'],
        run: (net, { body }) => net.market.set(body),
    },
    'POST /control/fault': {
        members: null, // depends on the kind of fault
        run: (net, { body }) => ({ id: net.faults.add(body) }),
    },
    'POST /control/clear-faults': { run: (net) => net.faults.clear() },
    'POST /control/expire-blockhashes': {
        members: ['cluster'],
        run: (net, { body }) => {
            chosenClusters(net, body.cluster).forEach((cluster) => cluster.expireBlockhashes());
        },
    },
    'POST /control/advance-slots': {
        members: ['cluster', 'slots'],
        run: (net, { body }) => {
            const slots = parseU64(body.slots, 'slots');
            if (slots > MAX_ADVANCE_SLOTS) {
                throw new BadInput(`slots must be at most ${MAX_ADVANCE_SLOTS}`);
            }
            chosenClusters(net, body.cluster).forEach((cluster) => cluster.advanceSlots(slots));
        },
    },
};

function readBody(text, members = []) {
    let body;
    try {
        body = text === '' ? {} : JSON.parse(text);
    } catch {
        throw new BadInput('the body is not JSON');
    }
    if (!isObject(body)) {
        throw new BadInput('the body must be a JSON object');
    }
    const unknown = Object.keys(body).find((name) => members !== null && !members.includes(name));
    if (unknown !== undefined) {
        throw new BadInput(`unknown member ${JSON.stringify(unknown)}: known are ${members.join(', ') || 'none'}`);
    }
    return body;
}

/** Returns the reply { status, type, body } to a control request. */
export async function answerControl(net, { method, path, query, headers, body }) {
    const reply = (status, value) => ({ status, type: 'application/json', body: toJson(value) });
    const route = `${method} ${path}`;
    if (headers.origin !== undefined) {
        return reply(403, { error: 'not for web pages' });
    }
    if (!Object.hasOwn(routes, route)) {
        return reply(404, { error: `no such control: use one of ${Object.keys(routes).join(', ')}` });
    }
    try {
        const { members, run } = routes[route];
        return reply(200, await run(net, { query, body: readBody(body, members) }) ?? { ok: true });
    } catch (error) {
        if (error instanceof BadInput) {
            return reply(400, { error: error.message });
        }
        throw error;
    }
}
