import { closeSync, openSync, writeSync } from 'node:fs';

const MAX_ENTRIES = 10_000;
const MAX_BODY_CHARS = 4096;

/**
 * Records requests and their results, in memory and, with a file, as one JSON line per finished
 * request. Lines are in the order of completion; `seq` is the order of arrival.
 */
export class RequestLog {
    #entries = [];
    #startedAt = Date.now();
    #nextSeq = 1;
    #file;

    constructor(path) {
        this.#file = path === undefined ? null : openSync(path, 'w', 0o600);
    }

    /** Records an arrival. `doneMs` and `status` of its entry are null until `finish`. */
    begin({ body, ...details }) {
        const entry = {
            seq: this.#nextSeq,
            atMs: Date.now() - this.#startedAt,
            doneMs: null,
            ...details,
            body: body.slice(0, MAX_BODY_CHARS),
            status: null,
            fault: null,
        };
        this.#nextSeq += 1;
        this.#entries.push(entry);
        if (this.#entries.length > MAX_ENTRIES) {
            this.#entries.shift();
        }
        return entry;
    }

    /** Completes an entry; a null status means that no reply was sent. */
    finish(entry, status) {
        entry.doneMs = Date.now() - this.#startedAt;
        entry.status = status;
        if (this.#file !== null) {
            writeSync(this.#file, `${JSON.stringify(entry)}\n`);
        }
    }

    /** Returns the entries after number `after`: all, or those of one RPC method or price source. */
    entries({ after = 0, name } = {}) {
        return this.#entries.filter((entry) => entry.seq > after && (name === undefined || entry.name === name));
    }

    clear() {
        this.#entries = [];
    }

    close() {
        if (this.#file !== null) {
            closeSync(this.#file);
            this.#file = null;
        }
    }
}
