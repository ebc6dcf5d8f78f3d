import assert from 'node:assert/strict';
import { test } from 'node:test';
import { fill, listingIs, logInToDeezer, open, openRow, screenshot } from './harness.mjs';

// Opens TIDAL and presses its login, which opens the service's page in a tab.
async function startTidalLogin(page, context) {
  await openRow(page, 'TIDAL');
  const dialog = page.locator('dialog[open]');
  const login = dialog.locator('#dialog-buttons button').filter({ hasText: /log in/i }).last();
  const [tab] = await Promise.all([context.waitForEvent('page'), login.click()]);
  await tab.waitForURL(/\/web\/tidal\/authorize/);
  return { dialog, tab };
}

test('the Deezer form: a field left empty, a wrong password, then the right one', async (t) => {
  const { page, problems } = await open(t);
  await openRow(page, 'Deezer');
  const dialog = page.locator('dialog[open]');
  await dialog.locator('#dialog-title', { hasText: 'Log in to Deezer' }).waitFor();
  assert.deepEqual(await dialog.locator('select option').allTextContents(), ['Standard', 'High Quality']);

  await dialog.locator('#dialog-buttons button', { hasText: 'Log in' }).click();
  await dialog.locator('#dialog-error', { hasText: '"E-mail"' }).waitFor();
  assert.equal(await page.getByLabel('E-mail').getAttribute('aria-invalid'), 'true');
  await screenshot(page, 'login-field-error');

  await page.keyboard.press('Escape');
  await logInToDeezer(page, 'wrong');
  await dialog.getByText('Wrong e-mail or password').waitFor();
  await screenshot(page, 'login-wrong-password');
  await dialog.locator('#dialog-buttons button').first().click();
  await dialog.locator('#dialog-title', { hasText: 'Log in to Deezer' }).waitFor();
  await fill(page, 'E-mail', 'me@example.com');
  await fill(page, 'Password', 'secret');
  await dialog.locator('#dialog-buttons button', { hasText: 'Log in' }).click();
  await listingIs(page, 'Deezer');
  assert.equal(await page.locator('dialog[open]').count(), 0);
  await page.locator('button.row', { hasText: 'Flow' }).waitFor();
  assert.deepEqual(problems, []);
});

test("TIDAL by OAuth: the service's page opens in a tab, and the explorer goes on to TIDAL", async (t) => {
  const { page, context } = await open(t);
  const { tab } = await startTidalLogin(page, context);
  await tab.locator('#user').fill('me@example.com');
  await tab.locator('#password').fill('secret');
  await screenshot(tab, 'oauth-service-page');
  await tab.locator('button[type="submit"]').click();
  await tab.getByText('The login has ended').waitFor();

  await page.waitForFunction(() => !document.getElementById('dialog').open);
  await listingIs(page, 'TIDAL');
  await screenshot(page, 'oauth-done');
});

test('the explorer answers while a login waits for the browser', async (t) => {
  const { page, context } = await open(t);
  const { dialog, tab } = await startTidalLogin(page, context);
  await dialog.locator('#dialog-error.note').waitFor();

  // The login waits for the browser; the person goes on browsing meanwhile.
  await page.keyboard.press('Escape');
  await openRow(page, 'Radios');
  await listingIs(page, 'Radios');
  await page.locator('button.row', { hasText: 'Popular stations' }).waitFor();
  assert.equal(await page.locator('.toast', { hasText: 'Logged in' }).count(), 0);

  // The login was still waiting all along: it ends as the browser comes back.
  await tab.locator('#user').fill('me@example.com');
  await tab.locator('#password').fill('secret');
  await tab.locator('button[type="submit"]').click();
  await tab.getByText('The login has ended').waitFor();
  await page.locator('.toast', { hasText: 'Logged in' }).waitFor();
  await listingIs(page, 'TIDAL');
});
