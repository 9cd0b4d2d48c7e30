#!/usr/bin/env node
/** The command: starts a Localnet with the settings of the command line and shuts it down cleanly. */

import { renameSync, writeFileSync } from 'node:fs';
import { BadInput } from './errors.mjs';
import { Localnet } from './localnet.mjs';
import { parseOptions, usage } from './options.mjs';

const PARENT_POLL_MS = 1000;

function isRunning(pid) {
    try {
        process.kill(pid, 0);
        return true;
    } catch (error) {
        return error.code === 'EPERM';
    }
}

/** Written atomically, so that a reader never sees an incomplete file. */
function writeWhole(path, content) {
    const unfinished = `${path}.${process.pid}.new`;
    writeFileSync(unfinished, content);
    renameSync(unfinished, path);
}

async function main() {
    const options = parseOptions(process.argv.slice(2));
    if (options.help) {
        process.stdout.write(usage);
        return;
    }

    const net = new Localnet(options.net);
    for (const { clusters, address, amount } of options.fund) {
        clusters.forEach((name) => net.clusters[name].setBalance(address, amount));
    }
    for (const { clusters, address, amount } of options.usdc) {
        for (const name of clusters) {
            await net.clusters[name].setUsdc(address, amount);
        }
    }
    const url = await net.listen(options.listen);

    let ending = false;
    const end = async () => {
        if (!ending) {
            ending = true;
            await net.close();
            process.exit(0);
        }
    };
    process.on('SIGTERM', end);
    process.on('SIGINT', end);
    if (options.parent !== undefined) {
        setInterval(() => isRunning(options.parent) || end(), PARENT_POLL_MS);
    }

    if (options.endpoints !== undefined) {
        writeWhole(options.endpoints, `${JSON.stringify(net.endpoints, null, 4)}\n`);
    }
    process.stdout.write(`${JSON.stringify({ url })}\n`);
}

main().catch((error) => {
    process.stderr.write(`localnet: ${error.message}\n`);
    process.exit(error instanceof BadInput ? 2 : 1);
});
