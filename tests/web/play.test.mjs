import assert from 'node:assert/strict';
import { test } from 'node:test';
import { listingIs, logInToDeezer, open, openRow, playerStatus, screenshot, until } from './harness.mjs';

// The audio element's own view: it plays, and time goes on.
async function audioPlays(page) {
  await page.waitForFunction(() => {
    const audio = document.getElementById('audio');
    return !audio.paused && audio.currentTime > 0.3;
  });
}

// Plays a radio from the cloud's popular stations until its audio runs.
async function playRadioAlfama(page) {
  await openRow(page, 'Radios');
  await openRow(page, 'Popular stations');
  await openRow(page, 'Radio Alfama');
  await audioPlays(page);
}

test('a radio plays in the audio element, and the cloud hears it start and pause', async (t) => {
  const { page, problems } = await open(t);
  await playRadioAlfama(page);
  const status = await until('the cloud to hear the start', async () => {
    const s = await playerStatus(page);
    return s.events?.includes('start') && s;
  });
  assert.equal(status.state, 'playing');
  assert.equal(status.track.title, 'Radio Alfama');
  assert.match(await page.locator('#audio').getAttribute('src'), /\/media\/r1001/);
  await page.locator('#heard', { hasText: 'start' }).waitFor();
  await screenshot(page, 'play-radio');

  await page.locator('#controls [data-command="pause"]').click();
  await page.waitForFunction(() => document.getElementById('audio').paused);
  await until('the cloud to hear the pause', async () => (await playerStatus(page)).events?.includes('pause'));
  await page.locator('#controls [data-command="stop"]').click();
  await page.locator('#player-state', { hasText: 'stopped' }).waitFor();
  assert.deepEqual(problems, []);
});

// Logged in to Deezer, with Flow playing its first track.
async function playFlow(t) {
  const session = await open(t);
  await logInToDeezer(session.page);
  await listingIs(session.page, 'Deezer');
  await openRow(session.page, 'Flow');
  await audioPlays(session.page);
  return session;
}

// Presses Next and waits until another stream plays.
async function skip(page) {
  const before = await page.locator('#audio').getAttribute('src');
  await page.locator('#controls [data-command="next"]').click();
  await page.waitForFunction((b) => document.getElementById('audio').getAttribute('src') !== b, before);
}

test('Flow plays track after track: next skips, and a like is answered', async (t) => {
  const { page } = await playFlow(t);
  const first = await page.locator('#track-title').textContent();
  await skip(page);
  await audioPlays(page);
  assert.notEqual(await page.locator('#track-title').textContent(), first);

  await page.locator('#controls [data-command="like"]').click();
  await page.locator('#player[data-rating="positive"]').waitFor();
  await screenshot(page, 'play-flow');
});

test('a program goes on to the next track when one ends', async (t) => {
  const { page } = await playFlow(t);
  const first = await page.locator('#audio').getAttribute('src');
  // The simulated tracks sound for a few seconds; the end is the audio element's own.
  await page.waitForFunction((before) => {
    const audio = document.getElementById('audio');
    return audio.getAttribute('src') !== before && !audio.paused;
  }, first, { timeout: 40000 });
  await screenshot(page, 'play-next-track');
});

test('the skip limit of a free account is offered as a subscription', async (t) => {
  const { page } = await playFlow(t);
  // A free account's skips of the hour.
  for (let skips = 0; skips < 6; ++skips) await skip(page);
  await page.locator('#controls [data-command="next"]').click();
  const offer = page.locator('.toast.error', { hasText: 'Skip limit' });
  await offer.waitFor();
  assert.equal(await offer.locator('a').getAttribute('href'), 'https://signup.example/deezer');
  await screenshot(page, 'play-skip-limit');
});

test("the cloud's answer to a stop shows as a notification, and its button works", async (t) => {
  const { page, problems } = await open(t, { width: 390, height: 844 });
  await openRow(page, 'Podcasts');
  await openRow(page, 'Night Train Mysteries');
  await openRow(page, 'Episodes');
  await openRow(page, 'Night Train Mysteries, episode 5');
  await audioPlays(page);
  await page.locator('#controls [data-command="stop"]').click();
  const note = page.locator('.toast', { hasText: 'Thanks for listening' });
  await note.waitFor();
  // The button is the dialog's, not words about it.
  assert.doesNotMatch(await note.textContent(), / at /);
  await screenshot(page, 'play-notification');
  await note.getByRole('button', { name: 'More episodes' }).click();
  await listingIs(page, 'Night Train Mysteries');
  assert.equal(await note.count(), 0);
  assert.equal(await page.locator('.toast.error').count(), 0);
  assert.deepEqual(problems, []);
});

test('a page that comes anew shows what plays, and plays it on', async (t) => {
  const { page, problems } = await open(t);
  await playRadioAlfama(page);
  // Once the cloud heard the start, the host has nothing more to say.
  await until('the cloud to hear the start', async () => (await playerStatus(page)).events?.includes('start'));

  await page.reload();
  await page.locator('#player:not([hidden])[data-state="playing"]').waitFor();
  assert.equal(await page.locator('#track-title').textContent(), 'Radio Alfama');
  await page.locator('#heard', { hasText: 'start' }).waitFor();
  await audioPlays(page);
  await screenshot(page, 'play-after-reload');

  // The page took up the stream as the host knows it: a pause reaches it,
  // and a paused one comes back paused and goes on.
  await page.locator('#controls [data-command="pause"]').click();
  await until('the host to pause', async () => (await playerStatus(page)).state === 'paused');
  await page.reload();
  await page.locator('#player:not([hidden])[data-state="paused"]').waitFor();
  assert.equal(await page.locator('#track-title').textContent(), 'Radio Alfama');
  assert.equal(await page.evaluate(() => document.getElementById('audio').paused), true);
  await page.locator('#controls [data-command="pause"]').click();
  await audioPlays(page);
  await until('the host to go on', async () => (await playerStatus(page)).state === 'playing');
  assert.deepEqual(problems, []);
});
