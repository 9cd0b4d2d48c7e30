import { parseArgs } from 'node:util';
import { parseAddress, parseDecimal, SOL_DECIMALS, USDC_DECIMALS } from './amounts.mjs';
import { BadInput } from './errors.mjs';

export const usage = `Usage: node server.mjs [options]

A local Solana cluster (separate mainnet and devnet), the price services and an explorer page on one
loopback port. When ready it prints one line of JSON: {"url":"http://127.0.0.1:PORT"}.

  --port N                          port to listen on (default 0: any free one)
  --host HOST                       127.0.0.1 (default) or ::1
  --endpoints FILE                  write the addresses for the wallet to FILE as JSON
  --log FILE                        write one JSON line per request to FILE
  --fund [CLUSTER:]ADDRESS=SOL      start with a balance; may be repeated
  --usdc [CLUSTER:]ADDRESS=AMOUNT   start with USDC; may be repeated
                                    (CLUSTER is mainnet or devnet; without it, both)
  --price N                         dollars per SOL (default 150.25)
  --change N                        change of the price in 24 hours, in percent (default 2.345)
  --slot-ms N                       length of a slot (default 400)
  --parent PID                      exit when that process does
  --help                            show this text
`;

const text = { type: 'string' };
const repeated = { type: 'string', multiple: true };
const known = {
    port: text, host: text, endpoints: text, log: text, price: text, change: text, parent: text,
    'slot-ms': text, fund: repeated, usdc: repeated, help: { type: 'boolean' },
};

function number(values, name, { low, high, whole = false }) {
    const value = values[name];
    if (value === undefined) {
        return undefined;
    }
    const parsed = /^-?\d+(\.\d+)?$/.test(value) ? Number(value) : NaN;
    if (!(parsed >= low && parsed <= high) || (whole && !Number.isInteger(parsed))) {
        throw new BadInput(`--${name} must be ${whole ? 'an integer' : 'a number'} from ${low} to ${high}`);
    }
    return parsed;
}

function holdings(list, name, decimals) {
    return (list ?? []).map((item) => {
        const match = /^(?:(mainnet|devnet):)?([^=:]+)=(.+)$/.exec(item);
        if (!match) {
            throw new BadInput(`--${name} takes [CLUSTER:]ADDRESS=AMOUNT`);
        }
        const [, cluster, address, amount] = match;
        return {
            clusters: cluster ? [cluster] : ['mainnet', 'devnet'],
            address: parseAddress(address, `the address of --${name}`),
            amount: parseDecimal(amount, decimals, `the amount of --${name}`),
        };
    });
}

/** Parses the command line into settings. Throws BadInput with a message for the user. */
export function parseOptions(args) {
    let values;
    try {
        // parseArgs would take a negative number after a space for another option.
        const joined = args.map((arg, index) => (arg === '--change' && /^-\d/.test(args[index + 1] ?? '')
            ? `--change=${args[index + 1]}` : arg))
            .filter((arg, index) => !(args[index - 1] === '--change' && /^-\d/.test(arg)));
        ({ values } = parseArgs({ args: joined, options: known, strict: true }));
    } catch (error) {
        throw new BadInput(error.message);
    }
    return {
        help: values.help === true,
        listen: { host: values.host, port: number(values, 'port', { low: 0, high: 65535, whole: true }) },
        endpoints: values.endpoints,
        parent: number(values, 'parent', { low: 1, high: 2 ** 31 - 1, whole: true }),
        fund: holdings(values.fund, 'fund', SOL_DECIMALS),
        usdc: holdings(values.usdc, 'usdc', USDC_DECIMALS),
        net: {
            logFile: values.log,
            price: number(values, 'price', { low: 0.000001, high: 1e9 }),
            change: number(values, 'change', { low: -99.999, high: 1e6 }),
            slotMs: number(values, 'slot-ms', { low: 1, high: 3_600_000, whole: true }),
        },
    };
}
