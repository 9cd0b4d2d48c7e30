import assert from 'node:assert/strict';
import { test } from 'node:test';
import { startNet } from './helpers.mjs';

const paths = {
    coingecko: '/coingecko/api/v3/simple/price?ids=solana&vs_currencies=usd&include_24hr_change=true',
    binance: '/binance/api/v3/ticker/24hr?symbol=SOLUSDT',
    coinbase: '/coinbase/v2/prices/SOL-USD/spot',
    chart: '/coingecko/api/v3/coins/solana/market_chart?vs_currency=usd&days=1',
};

test('all services tell the same price and change', async (t) => {
    const { get, control } = await startNet(t, { price: 150.25, change: 2.345 });
    const read = async (source) => (await get(paths[source])).json();
    for (const [price, change] of [[150.25, 2.345], [99.5, -4], [0.125, null], [151, 0]]) {
        await control('price', { price, change });
        assert.deepEqual((await read('coingecko')).solana, change === null ? { usd: price } : { usd: price, usd_24h_change: change });
        const { lastPrice, priceChangePercent } = await read('binance');
        assert.deepEqual([typeof lastPrice, Number(lastPrice)], ['string', price]);
        assert.equal(priceChangePercent, change?.toFixed(3));
        assert.deepEqual(await read('coinbase'), { data: { amount: String(price), base: 'SOL', currency: 'USD' } });

        const { prices } = await read('chart');
        assert.equal(prices.length, 288);
        assert.ok(Math.abs(prices.at(-1)[1] - price) < 1e-9 * price, 'ends at the price');
        const rise = (prices.at(-1)[1] / prices[0][1] - 1) * 100;
        assert.ok(Math.abs(rise - (change ?? 0)) < 1e-6, 'rises by the change');
    }
});

test('the chart is a day of believable prices, the same after every start', async (t) => {
    const [one, two] = await Promise.all([startNet(t), startNet(t)]);
    const before = Date.now();
    const { prices, market_caps: caps, total_volumes: volumes } = await (await one.get(paths.chart)).json();
    const newest = prices.at(-1)[0];
    assert.ok(newest >= before && newest <= Date.now());
    assert.equal(newest - prices[0][0], 287 * 5 * 60 * 1000);
    assert.deepEqual([caps.length, volumes.length], [288, 288]);

    const values = prices.map(([, value]) => value);
    const steps = values.slice(1).map((value, index) => Math.abs(value / values[index] - 1));
    assert.ok(Math.max(...steps) < 0.01, 'no jumps');
    assert.ok(new Set(values).size > 280, 'not a line of equal prices');
    const again = (await (await two.get(paths.chart)).json()).prices;
    assert.deepEqual(again.map(([, value]) => value), values);

    await one.control('price', { chart: [1, 2.5, 2] });
    const ordered = (await (await one.get(paths.chart)).json()).prices;
    assert.deepEqual(ordered.map(([, value]) => value), [1, 2.5, 2]);
    await one.control('price', { chart: null });
    assert.equal((await (await one.get(paths.chart)).json()).prices.length, 288);
});

test('a query for something else is not answered with the price of SOL', async (t) => {
    const { get } = await startNet(t);
    const cases = [
        ['/coingecko/api/v3/simple/price?ids=bitcoin&vs_currencies=usd', 200, {}],
        ['/coingecko/api/v3/simple/price?ids=solana&vs_currencies=eur', 200, {}],
        ['/coingecko/api/v3/simple/price?ids=solana&vs_currencies=usd', 200, { solana: { usd: 150.25 } }],
        ['/binance/api/v3/ticker/24hr?symbol=SOLUSD', 400, { code: -1121, msg: 'Invalid symbol.' }],
        ['/coingecko/api/v3/coins/solana/market_chart?vs_currency=usd&days=7', 400],
        ['/coinbase/v2/prices/BTC-USD/spot', 404],
    ];
    for (const [path, status, body] of cases) {
        const response = await get(path);
        assert.equal(response.status, status, path);
        if (body) {
            assert.deepEqual(await response.json(), body, path);
        }
    }
});
