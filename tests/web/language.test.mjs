import assert from 'node:assert/strict';
import { test } from 'node:test';
import { listingIs, open, openRow, screenshot } from './harness.mjs';

test("a German device shows the cloud's texts and the module's in German", async (t) => {
  const { page, problems } = await open(t, {
    host: ['--language', 'de_DE', '--fault', '/airable/radios/r1001/streams/*=status:503'],
  });
  await listingIs(page, 'Musikdienste');
  await openRow(page, 'Radio');
  await openRow(page, 'Beliebte Sender');
  await openRow(page, 'Radio Alfama');
  const failed = page.locator('.toast', { hasText: 'Der Titel konnte nicht vom Server abgerufen werden' });
  await failed.waitFor();
  assert.doesNotMatch(await failed.textContent(), /retrieve/);
  await screenshot(page, 'language-german');
  assert.deepEqual(problems, []);
});
