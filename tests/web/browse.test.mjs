import assert from 'node:assert/strict';
import { test } from 'node:test';
import { listingIs, open, openRow, screenshot } from './harness.mjs';

test('a paged listing grows page by page as it scrolls, and the crumbs lead back', async (t) => {
  const { page, problems } = await open(t);
  await listingIs(page, 'Music services');
  await openRow(page, 'Radios');
  await listingIs(page, 'Radios');
  await openRow(page, 'All stations');
  await listingIs(page, 'All stations');
  const count = page.locator('#count');
  await count.filter({ hasText: /^25 of \d+ rows$/ }).waitFor();
  const total = Number(/of (\d+)/.exec(await count.textContent())[1]);
  assert.ok(total > 50, `a listing of more than two pages, not ${total}`);

  await page.locator('#rows li').last().scrollIntoViewIfNeeded();
  await count.filter({ hasText: `50 of ${total} rows` }).waitFor();
  const titles = await page.locator('button.row .title').allTextContents();
  assert.equal(new Set(titles).size, titles.length, 'no row is shown twice');
  await screenshot(page, 'browse-paged');

  await page.locator('#crumbs a', { hasText: 'Radios' }).click();
  await listingIs(page, 'Radios');
  assert.deepEqual(problems, []);
});

test('the keyboard browses: arrows move between rows, Enter opens, Backspace goes up', async (t) => {
  const { page } = await open(t);
  await listingIs(page, 'Music services');
  await page.keyboard.press('ArrowDown');
  await page.keyboard.press('ArrowUp');
  await page.keyboard.press('Enter');
  await listingIs(page, 'Radios');
  await page.keyboard.press('Backspace');
  await listingIs(page, 'Music services');
  await screenshot(page, 'browse-keyboard');
});

test("a row's context menu adds it to the favourites", async (t) => {
  const { page } = await open(t, { width: 390, height: 844 });
  await openRow(page, 'Radios');
  await openRow(page, 'Popular stations');
  await listingIs(page, 'Popular stations');
  await page.getByRole('button', { name: 'Menu of Radio Alfama' }).click();
  const dialog = page.locator('dialog[open]');
  await dialog.locator('button', { hasText: 'Add to favourites' }).click();
  await dialog.getByText('is one of your favourites now').waitFor();
  await screenshot(page, 'menu-favourite');
  await page.keyboard.press('Escape');
  await page.locator('#crumbs a', { hasText: 'Radios' }).click();
  await openRow(page, 'Favourite stations');
  await page.locator('button.row', { hasText: 'Radio Alfama' }).waitFor();
});
