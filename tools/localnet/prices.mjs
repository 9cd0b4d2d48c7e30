/** The replies of the price services, all derived from one price, one change and one chart. */

import { BadInput } from './errors.mjs';

const CHART_POINTS = 288;
const CHART_STEP_MS = 5 * 60 * 1000;
const MAX_CHART_POINTS = 5000;
/** The size of one step of the generated chart, relative to the price. */
const STEP_SIZE = 0.004;
const SEED = 0x5eed;
const SUPPLY = 540_000_000;

/** A small random generator with a fixed seed, so that every start generates the same chart. */
function seededRandom(seed) {
    let state = seed >>> 0;
    return () => {
        state = (state + 0x6d2b79f5) >>> 0;
        let mixed = Math.imul(state ^ (state >>> 15), state | 1);
        mixed ^= mixed + Math.imul(mixed ^ (mixed >>> 7), mixed | 61);
        return ((mixed ^ (mixed >>> 14)) >>> 0) / 2 ** 32;
    };
}

/** A random walk with fixed ends, so that it is consistent with the price and its change. */
function generateChart(price, change) {
    const random = seededRandom(SEED);
    const walk = [0];
    while (walk.length < CHART_POINTS) {
        walk.push(walk.at(-1) + (random() - 0.5) * STEP_SIZE);
    }
    const first = price / (1 + (change ?? 0) / 100);
    return walk.map((step, index) => {
        const progress = index / (CHART_POINTS - 1);
        const wiggle = step - progress * walk.at(-1);
        return first + progress * (price - first) + wiggle * price;
    });
}

function finite(value, name) {
    if (typeof value !== 'number' || !Number.isFinite(value)) {
        throw new BadInput(`${name} must be a finite number`);
    }
    return value;
}

export class Market {
    #price;
    #change;
    #chart = null;

    constructor({ price = 150.25, change = 2.345 } = {}) {
        this.set({ price, change });
    }

    /**
     * Sets the given members: `price` in dollars, `change` in percent or null for none, `chart` as
     * an array of prices or null for the generated one.
     */
    set({ price = this.#price, change = this.#change, chart = this.#chart }) {
        if (finite(price, 'price') <= 0) {
            throw new BadInput('price must be above 0');
        }
        if (change !== null && finite(change, 'change') <= -100) {
            throw new BadInput('change must be above -100');
        }
        if (chart !== null && !(Array.isArray(chart) && chart.length <= MAX_CHART_POINTS)) {
            throw new BadInput(`chart must be null or an array of at most ${MAX_CHART_POINTS} prices`);
        }
        chart?.forEach((point) => finite(point, 'a chart price'));
        [this.#price, this.#change, this.#chart] = [price, change, chart];
    }

    get summary() {
        return { price: this.#price, change: this.#change, chart: this.#chart };
    }

    /** Returns the reply { status, body } of one service to a path below its base address and a query. */
    answer(source, query) {
        return this.#documents[source](query);
    }

    #documents = {
        coingecko: (query) => {
            const wanted = (name, item) => (query.get(name) ?? '').split(',').includes(item);
            if (!wanted('ids', 'solana') || !wanted('vs_currencies', 'usd')) {
                return { status: 200, body: {} };
            }
            const withChange = query.get('include_24hr_change') === 'true' && this.#change !== null;
            const change = withChange ? this.#change : undefined;
            return { status: 200, body: { solana: { usd: this.#price, usd_24h_change: change } } };
        },

        binance: (query) => {
            if (query.get('symbol') !== 'SOLUSDT') {
                return { status: 400, body: { code: -1121, msg: 'Invalid symbol.' } };
            }
            const open = this.#price / (1 + (this.#change ?? 0) / 100);
            const now = Date.now();
            const amount = (value) => value.toFixed(8);
            return {
                status: 200,
                body: {
                    symbol: 'SOLUSDT',
                    priceChange: amount(this.#price - open),
                    priceChangePercent: this.#change === null ? undefined : this.#change.toFixed(3),
                    weightedAvgPrice: amount((this.#price + open) / 2),
                    prevClosePrice: amount(open),
                    lastPrice: amount(this.#price),
                    lastQty: '1.00000000',
                    bidPrice: amount(this.#price),
                    bidQty: '100.00000000',
                    askPrice: amount(this.#price),
                    askQty: '100.00000000',
                    openPrice: amount(open),
                    highPrice: amount(Math.max(open, this.#price)),
                    lowPrice: amount(Math.min(open, this.#price)),
                    volume: '3000000.00000000',
                    quoteVolume: amount(3_000_000 * this.#price),
                    openTime: now - CHART_POINTS * CHART_STEP_MS,
                    closeTime: now,
                    firstId: 1,
                    lastId: 1_000_000,
                    count: 1_000_000,
                },
            };
        },

        coinbase: () => ({
            status: 200,
            body: { data: { amount: String(this.#price), base: 'SOL', currency: 'USD' } },
        }),

        chart: (query) => {
            if (query.get('vs_currency') !== 'usd' || query.get('days') !== '1') {
                return { status: 400, body: { error: 'only vs_currency=usd and days=1 are served' } };
            }
            const points = this.#chart ?? generateChart(this.#price, this.#change);
            const newest = Date.now();
            const series = (scale) => points.map((point, index) => [
                newest - (points.length - 1 - index) * CHART_STEP_MS, point * scale,
            ]);
            return {
                status: 200,
                body: { prices: series(1), market_caps: series(SUPPLY), total_volumes: series(SUPPLY / 20) },
            };
        },
    };
}

/**
 * Returns the service that a path belongs to, or null. The first segment is part of the wallet's
 * base address.
 */
const paths = new Map([
    ['/coingecko/api/v3/simple/price', 'coingecko'],
    ['/coingecko/api/v3/coins/solana/market_chart', 'chart'],
    ['/binance/api/v3/ticker/24hr', 'binance'],
    ['/coinbase/v2/prices/SOL-USD/spot', 'coinbase'],
]);

export function priceSourceOf(path) {
    return paths.get(path) ?? null;
}

export const priceSources = [...paths.values()];
