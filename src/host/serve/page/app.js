// The explorer: browsing from the root with breadcrumbs, dialogs, menus,
// logins and the player, wired to the host's events and to the keyboard.
import { call, listen } from './api.js';
import { Dialog } from './dialog.js';
import { Listing, isPlayable } from './listing.js';
import { Player } from './player.js';
import { showError, toast } from './toast.js';

const crumbs = []; // {path, title} from the root to the listing shown
const player = new Player();
const listing = new Listing({ activate, menu: openMenu });
const dialog = new Dialog({ pressed, login, open: (path) => { dialog.close(); browse(path); } });
let loginTab = null;

function drawCrumbs() {
  const nav = document.getElementById('crumbs');
  nav.replaceChildren(...crumbs.map((crumb, i) => {
    const link = document.createElement('a');
    link.href = `#${encodeURIComponent(crumb.path)}`;
    link.textContent = crumb.title || 'Untitled';
    if (i === crumbs.length - 1) link.setAttribute('aria-current', 'page');
    return link;
  }));
}

// Shows what a request answered: a listing, or a dialog over it.
function present(answer) {
  if (answer.dialog) {
    dialog.show(answer);
    return;
  }
  dialog.close();
  const at = crumbs.findIndex((c) => c.path === answer.path);
  if (at >= 0) crumbs.splice(at + 1);
  else crumbs.push({ path: answer.path, title: answer.roles?.title });
  crumbs[crumbs.length - 1].title = answer.roles?.title;
  drawCrumbs();
  listing.show(answer);
  if (location.hash !== `#${encodeURIComponent(answer.path)}`) history.pushState(null, '', `#${encodeURIComponent(answer.path)}`);
  listing.focusRow(0);
}

// Only the latest browse is shown: a fragment link moves the history and the
// hash at once, and a slow answer to an earlier one must not cover a later.
let browsing = 0;

async function browse(path) {
  const mine = ++browsing;
  document.body.setAttribute('aria-busy', 'true');
  const answer = await call('rows', { query: { path } });
  if (mine !== browsing) return;
  document.body.removeAttribute('aria-busy');
  showError(answer.error);
  if (!answer.error) present(answer);
}

async function activate(row) {
  if (isPlayable(row)) {
    player.play(row.path);
  } else if (row.type === 'action') {
    // An action of a listing, such as a service's log out, is pressed.
    const answer = await call('set', { body: { path: row.path, role: 'activate', value: true } });
    if (answer.error) showError(answer.error);
    else pressed(answer);
  } else if (row.path) {
    browse(row.path);
  }
}

async function openMenu(row) {
  const answer = await call('menu', { query: { path: row.path } });
  if (answer.error) showError(answer.error);
  else dialog.show(answer);
}

// A button was pressed: the dialogs it closed go, and where it sends the
// user shows.
function pressed(answer) {
  if (answer.listing?.error) {
    dialog.close();
    showError(answer.listing.error);
  } else if (answer.listing) {
    present(answer.listing);
  } else if (answer.goto) {
    // A place of the device's own, such as its home screen after a logout:
    // here, the root.
    dialog.close();
    toast(`Back to the start (${answer.goto})`);
    browse('/');
  } else {
    dialog.close();
  }
}

async function login(dialogPath) {
  // Opened at the click, as browsers allow, and sent on once the page is known.
  loginTab = window.open('about:blank', '_blank');
  const answer = await call('oauth', { body: { path: dialogPath } });
  if (answer.error) {
    loginTab?.close();
    dialog.error(answer.error.message);
    return;
  }
  if (loginTab) {
    loginTab.location = answer.url;
    dialog.note('Log in on the page that opened; this dialog closes when you are back.');
  } else {
    dialog.note(`Open this page to log in: ${answer.url}`);
  }
}

function up() {
  if (crumbs.length > 1) browse(crumbs[crumbs.length - 2].path);
}

// A notification's button, pressed as a dialog's is: where it sends the
// user shows.
async function pressNotification(button) {
  const answer = await call('set', { body: { path: button.path, role: 'activate', value: true } });
  if (answer.error) toast(answer.error.message, { kind: 'error' });
  else if (answer.listing || answer.goto) pressed(answer);
}

listen({
  player: (event, id) => player.heard(event, id),
  notification: (event) => toast(event.text, {
    buttons: (event.buttons ?? []).map((button) => ({ title: button.title, press: () => pressNotification(button) })),
  }),
  change: (event) => {
    if (event.path === listing.path) listing.reload();
  },
  login: (answer) => {
    if (answer.error) {
      dialog.error(answer.error.message);
      return;
    }
    if (answer.listing && !answer.listing.error) present(answer.listing);
    else dialog.close();
    toast('Logged in');
  },
}, () => player.restore());

addEventListener('popstate', () => browse(decodeURIComponent(location.hash.slice(1)) || '/'));
addEventListener('hashchange', () => {
  const path = decodeURIComponent(location.hash.slice(1));
  if (path && path !== listing.path) browse(path);
});

const keys = {
  ArrowDown: () => listing.focusRow(Number(document.activeElement?.dataset?.index ?? -1) + 1),
  ArrowUp: () => listing.focusRow(Number(document.activeElement?.dataset?.index ?? 1) - 1),
  Backspace: up,
  Escape: up,
  p: () => player.command('pause'),
  n: () => player.command('next'),
  b: () => player.command('previous'),
  s: () => player.command('stop'),
};
addEventListener('keydown', (event) => {
  const typing = ['INPUT', 'SELECT', 'TEXTAREA'].includes(event.target.tagName);
  if (dialog.isOpen || typing || event.ctrlKey || event.metaKey || event.altKey) return;
  const key = keys[event.key];
  if (!key) return;
  event.preventDefault();
  key();
});

browse(decodeURIComponent(location.hash.slice(1)) || '/');
