// The interface answers its own page only: no browser needed to check that.
import assert from 'node:assert/strict';
import { request } from 'node:http';
import { test } from 'node:test';
import { startHost } from './harness.mjs';

function ask(url, { method = 'GET', path = '/api/rows', headers = {}, body } = {}) {
  const { hostname, port } = new URL(url);
  return new Promise((resolve, reject) => {
    const req = request({ hostname, port, method, path, headers }, (res) => {
      let text = '';
      res.on('data', (chunk) => { text += chunk; });
      res.on('end', () => resolve({ status: res.statusCode, text }));
    });
    req.on('error', reject);
    req.end(body);
  });
}

test("requests that are not from the server's own page are refused with a reason", async (t) => {
  const { child, url } = await startHost();
  t.after(() => child.kill('SIGTERM'));
  const own = new URL(url).host;

  assert.equal((await ask(url)).status, 200);
  assert.equal((await ask(url, { headers: { Origin: url } })).status, 200);

  const rebound = await ask(url, { headers: { Host: `evil.example:${new URL(url).port}` } });
  assert.equal(rebound.status, 403);
  assert.match(rebound.text, new RegExp(`answers as ${own}`));

  const foreign = await ask(url, { headers: { Origin: 'http://evil.example' } });
  assert.equal(foreign.status, 403);
  assert.match(foreign.text, /evil\.example are refused/);

  const page = await ask(url, { path: '/', headers: { Host: 'evil.example' } });
  assert.equal(page.status, 403, 'the page itself is not served to another name either');

  const form = await ask(url, {
    method: 'POST', path: '/api/play', headers: { 'Content-Type': 'text/plain' }, body: '{"path":"/"}',
  });
  assert.equal(form.status, 415, 'a form of another site cannot post without JSON');

  const back = await ask(url, { path: '/back?x=1' });
  assert.equal(back.status, 409, 'a return with no login waiting ends nothing');
});

test('serving beyond loopback needs --allow-remote', async () => {
  const { spawnSync } = await import('node:child_process');
  const run = spawnSync(process.env.TARN_HOST, ['serve', '--host', '0.0.0.0', '--port', '0'], { encoding: 'utf8' });
  assert.equal(run.status, 2);
  assert.match(run.stderr, /--allow-remote/);
});
