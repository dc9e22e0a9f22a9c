// Runs the tests beside this file on what hosts/web/tools/build.mjs has built: node all.mjs <its output folder>
// Without that folder, the tools of hosts/web/package.json or Chromium there is nothing to run, which status 77 says.

import { spawnSync } from 'node:child_process';
import { existsSync, readdirSync } from 'node:fs';
import { resolve } from 'node:path';
import { fileURLToPath } from 'node:url';

const here = fileURLToPath(new URL('.', import.meta.url));
const built = resolve(process.argv[2]);
const chromium = process.env.ZOLT_CHROMIUM ?? '/usr/bin/chromium';
const missing = [`${built}/site/index.html`, `${here}/../../../hosts/web/node_modules/playwright-core`, chromium].filter((path) => !existsSync(path));
if (missing.length) {
  console.log(`skipped, since these are missing: ${missing.join(', ')}`);
  process.exit(77);
}
const tests = readdirSync(here).filter((name) => name.endsWith('.test.mjs')).map((name) => here + name);
// One at a time: what waits for a frame or a pause would fail where browsers wait for each other.
const results = tests.map((test) => spawnSync(process.execPath, ['--test', test], { stdio: 'inherit', env: { ...process.env, ZOLT_WEB_SITE: `${built}/site`, ZOLT_WEB_PACKAGE: `${built}/package` } }));
process.exit(results.every(({ status }) => status === 0) ? 0 : 1);
