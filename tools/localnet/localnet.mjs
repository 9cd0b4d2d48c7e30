/** The HTTP server: one loopback listener for two clusters and the price services. */

import http from 'node:http';
import { isIP } from 'node:net';
import { setTimeout as delay } from 'node:timers/promises';
import { Cluster } from './cluster.mjs';
import { answerControl } from './control.mjs';
import { BadInput } from './errors.mjs';
import { answerUnder, Faults } from './faults.mjs';
import { Market, priceSourceOf } from './prices.mjs';
import { RequestLog } from './request_log.mjs';
import { answerCall, errorReply, readCall } from './rpc.mjs';

const MAX_BODY_BYTES = 64 * 1024;
/** A fault description may contain a large reply. */
const MAX_CONTROL_BYTES = 2 * 1024 * 1024;
const REQUEST_TIMEOUT_MS = 15_000;
/** Longer than the longest delay of a fault. */
const IDLE_TIMEOUT_MS = 180_000;

const page = (title) => `<!doctype html><meta charset="utf-8"><title>${title}</title><h1>${title}</h1>\n`;

function plain(status, body) {
    return { status, type: 'text/plain', body: `${body}\n` };
}

/**
 * Reads the body as text; null if it exceeds the limit. A larger body is read to its end and
 * discarded, because a client that is still sending would not see the error reply.
 */
async function readBody(request, limit) {
    const chunks = [];
    let size = 0;
    for await (const chunk of request) {
        size += chunk.length;
        if (size <= limit) {
            chunks.push(chunk);
        }
    }
    return size <= limit ? Buffer.concat(chunks).toString('utf8') : null;
}

function send(response, answer) {
    if (answer.drop || response.destroyed) {
        response.destroy();
        return;
    }
    const body = Buffer.from(answer.body);
    response.writeHead(answer.status, {
        'Content-Type': answer.type,
        'Content-Length': body.length,
        ...(answer.location !== undefined && { Location: answer.location }),
    });
    if (answer.cut) {
        response.write(body.subarray(0, Math.floor(body.length / 2)), () => response.destroy());
        return;
    }
    response.end(body);
}

export class Localnet {
    #server = http.createServer({
        requestTimeout: REQUEST_TIMEOUT_MS,
        headersTimeout: REQUEST_TIMEOUT_MS,
        connectionsCheckingInterval: 5000,
    }, (request, response) => this.#serve(request, response));
    #closing = new AbortController();
    #host;

    constructor({ logFile, price, change, slotMs } = {}) {
        this.market = new Market({ price, change });
        this.clusters = {
            mainnet: new Cluster('mainnet', { slotMs }),
            devnet: new Cluster('devnet', { slotMs }),
        };
        this.faults = new Faults();
        this.log = new RequestLog(logFile);
        this.#server.timeout = IDLE_TIMEOUT_MS;
    }

    /** Starts listening on a loopback address; port 0 selects any free port. */
    async listen({ host = '127.0.0.1', port = 0 } = {}) {
        if (!['127.0.0.1', '::1'].includes(host)) {
            throw new BadInput('host must be 127.0.0.1 or ::1: the control interface is for this machine only');
        }
        this.#host = host;
        await new Promise((resolve, reject) => {
            this.#server.once('error', reject);
            this.#server.listen(port, host, resolve);
        });
        return this.url;
    }

    get url() {
        const host = isIP(this.#host) === 6 ? `[${this.#host}]` : this.#host;
        return `http://${host}:${this.#server.address().port}`;
    }

    /** The base addresses with which a wallet uses only this instance. */
    get endpoints() {
        const below = (path) => `${this.url}/${path}`;
        return {
            mainnet: below('mainnet'),
            devnet: below('devnet'),
            walletApp: below('wallet'),
            coingecko: below('coingecko'),
            binance: below('binance'),
            coinbase: below('coinbase'),
            explorer: below('explorer'),
        };
    }

    /** Closes every connection and drops delayed replies. */
    async close() {
        this.#closing.abort();
        const closed = new Promise((resolve) => { this.#server.close(resolve); });
        this.#server.closeAllConnections();
        await closed;
        this.log.close();
    }

    async #serve(request, response) {
        try {
            // The request line may contain anything; only paths are served.
            const url = new URL(request.url.replace(/^\/+/, '/'), 'http://localnet');
            const isControl = url.pathname.startsWith('/control/');
            const limit = isControl ? MAX_CONTROL_BYTES : MAX_BODY_BYTES;
            const body = await readBody(request, limit);
            const details = {
                method: request.method,
                path: url.pathname,
                query: url.searchParams,
                headers: request.headers,
                body,
            };
            if (body === null) {
                send(response, plain(413, `the body is larger than ${limit} bytes`));
            } else if (isControl) {
                send(response, await answerControl(this, details));
            } else {
                await this.#serveLogged(details, response);
            }
        } catch (error) {
            if (!response.headersSent && !response.destroyed) {
                send(response, plain(error.code === 'ERR_INVALID_URL' ? 400 : 500, error.message));
            } else {
                response.destroy();
            }
        }
    }

    async #serveLogged(details, response) {
        const route = this.#route(details);
        const entry = this.log.begin({
            method: details.method,
            path: details.path,
            query: Object.fromEntries(details.query),
            contentType: details.headers['content-type'] ?? null,
            userAgent: details.headers['user-agent'] ?? null,
            cluster: route.cluster?.name ?? null,
            name: route.name ?? null,
            params: route.call?.params ?? null,
            body: details.body,
        });
        let status = null;
        try {
            const { delayMs, effect } = this.faults.take(route.names ?? [], entry.cluster);
            entry.fault = [delayMs > 0 && 'latency', effect?.kind].filter(Boolean).join('+') || null;
            await delay(delayMs, undefined, { signal: this.#closing.signal });
            const rpcError = (error) => errorReply(route.call?.id ?? null, error);
            const answer = await answerUnder(effect, route.run, { rpcError });
            status = answer.status;
            send(response, answer);
        } finally {
            this.log.finish(entry, status);
        }
    }

    /** Classifies a request: the names by which faults match it, and a function for its true reply. */
    #route({ method, path, query, headers, body }) {
        const proxied = path === '/api/rpc';
        const clusterName = proxied ? (query.get('network') === 'devnet' ? 'devnet' : 'mainnet') : path.slice(1);
        const source = priceSourceOf(path);

        if (proxied || Object.hasOwn(this.clusters, clusterName)) {
            const cluster = this.clusters[clusterName];
            if (method !== 'POST') {
                return { cluster, run: () => plain(405, 'Used HTTP Method is not allowed. POST is required') };
            }
            if (!/^application\/json\s*(;|$)/i.test(headers['content-type'] ?? '')) {
                return { cluster, run: () => plain(415, 'Supplied content type is not allowed. Content-Type: application/json is required') };
            }
            const call = readCall(body);
            return {
                cluster,
                call,
                name: call.method,
                names: [call.method, ...(proxied ? ['proxy'] : [])],
                run: () => ({ status: 200, type: 'application/json', body: answerCall(cluster, call) }),
            };
        }
        if (method !== 'GET') {
            return { run: () => plain(405, 'only GET is served here') };
        }
        if (source) {
            return {
                name: source,
                names: [source],
                run: () => {
                    const { status, body: document } = this.market.answer(source, query);
                    return { status, type: 'application/json', body: JSON.stringify(document) };
                },
            };
        }
        if (/^\/explorer(\/|$)/.test(path)) {
            return {
                name: 'explorer',
                names: ['explorer'],
                run: () => ({ status: 200, type: 'text/html', body: page('Local explorer') }),
            };
        }
        if (path === '/wallet') {
            return { run: () => ({ status: 200, type: 'text/html', body: page('Local wallet app') }) };
        }
        return { run: () => plain(404, 'nothing is served here') };
    }
}
