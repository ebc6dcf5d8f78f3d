// What every browser test needs: tarn-host serve against its embedded
// simulated cloud on a free port, and Debian's Chromium driven by
// playwright-core, with a screenshot of how each test ended.
import { spawn } from 'node:child_process';
import { mkdirSync } from 'node:fs';
import { join } from 'node:path';
import { chromium } from 'playwright-core';

const host = process.env.TARN_HOST;
const shots = process.env.SCREENSHOTS ?? 'screenshots';
const chromiumPath = process.env.CHROMIUM ?? '/usr/bin/chromium';

// Flags for a closed network: no calls home, no updates, no sign-in.
const flags = [
  '--no-sandbox', '--disable-gpu', '--disable-quic', '--no-first-run',
  '--disable-background-networking', '--disable-component-update', '--disable-sync',
  '--autoplay-policy=no-user-gesture-required',
];

// The host's own options come before the command, e.g. ['--language', 'de_DE'].
export function startHost(options = []) {
  return new Promise((resolve, reject) => {
    const child = spawn(host, [...options, 'serve', '--port', '0'], { stdio: ['ignore', 'pipe', 'pipe'] });
    let said = '';
    const timer = setTimeout(() => reject(new Error(`tarn-host serve said nothing useful: ${said}`)), 20000);
    child.stdout.on('data', (chunk) => {
      said += chunk;
      const match = /serving (http:\/\/\S+)\//.exec(said);
      if (match) {
        clearTimeout(timer);
        resolve({ child, url: match[1] });
      }
    });
    child.stderr.on('data', (chunk) => { said += chunk; });
    child.on('exit', (code) => reject(new Error(`tarn-host serve ended (${code}): ${said}`)));
  });
}

// A session: the host, a browser and a page showing the explorer.
export async function open(t, { width = 1000, height = 800, host: options = [] } = {}) {
  const served = await startHost(options);
  const browser = await chromium.launch({ executablePath: chromiumPath, headless: true, args: flags });
  const context = await browser.newContext({ viewport: { width, height } });
  const page = await context.newPage();
  const problems = [];
  page.on('pageerror', (error) => problems.push(error.message));
  t.after(async () => {
    await browser.close();
    served.child.kill('SIGTERM');
  });
  await page.goto(`${served.url}/`);
  return { page, context, url: served.url, problems };
}

export async function screenshot(page, name) {
  mkdirSync(shots, { recursive: true });
  await page.screenshot({ path: join(shots, `${name}.png`) });
}

// Opens the row with this title in the listing shown.
export async function openRow(page, title) {
  await page.locator('button.row', { hasText: title }).first().click();
}

// The listing shown has this title.
export async function listingIs(page, title) {
  await page.locator('h1#title', { hasText: title }).waitFor();
}

export async function fill(page, label, value) {
  await page.getByLabel(label).fill(value);
}

// Logs in to Deezer through its form, as a person does.
export async function logInToDeezer(page, password = 'secret') {
  await listingIs(page, 'Music services');
  await openRow(page, 'Deezer');
  await page.locator('#dialog-title', { hasText: 'Log in to Deezer' }).waitFor();
  await fill(page, 'E-mail', 'me@example.com');
  await fill(page, 'Password', password);
  await page.locator('#dialog-buttons button', { hasText: 'Log in' }).click();
}

// The player's status as the host reports it.
export async function playerStatus(page) {
  return page.evaluate(async () => (await fetch('/api/player')).json());
}

export async function until(what, check, seconds = 15) {
  const end = Date.now() + seconds * 1000;
  for (;;) {
    const value = await check();
    if (value) return value;
    if (Date.now() > end) throw new Error(`timed out waiting for ${what}`);
    await new Promise((r) => setTimeout(r, 100));
  }
}
