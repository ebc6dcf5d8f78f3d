// The listing a person browses: its rows, drawn as they come, page by page
// as the list scrolls, as a device's interface asks for them.
import { call } from './api.js';
import { showError } from './toast.js';

const rowsList = () => document.getElementById('rows');

export function isPlayable(row) {
  const meta = row.mediaData?.metaData ?? {};
  return row.type !== 'container' && Boolean(meta.prePlayPath || meta.playLogicPath);
}

function rowItem(row, index, actions) {
  const item = document.createElement('li');
  const open = document.createElement('button');
  open.type = 'button';
  open.className = 'row';
  open.dataset.index = index;
  if (row.disabled) open.disabled = true;
  const icon = document.createElement('img');
  icon.alt = '';
  icon.loading = 'lazy';
  if (row.icon) icon.src = row.icon;
  icon.addEventListener('error', () => icon.removeAttribute('src'));
  const text = document.createElement('span');
  text.className = 'text';
  const title = document.createElement('span');
  title.className = 'title';
  title.textContent = row.title ?? '';
  const kind = document.createElement('span');
  kind.className = 'kind';
  kind.textContent = isPlayable(row) ? '▶ play' : row.type === 'container' ? '›' : (row.type ?? '');
  text.append(title, kind);
  open.append(icon, text);
  open.addEventListener('click', () => actions.activate(row));
  item.append(open);
  if (row.context?.path) {
    const menu = document.createElement('button');
    menu.type = 'button';
    menu.className = 'menu';
    menu.title = `Menu of ${row.title}`;
    menu.setAttribute('aria-label', `Menu of ${row.title}`);
    menu.textContent = '⋯';
    menu.addEventListener('click', () => actions.menu(row));
    item.append(menu);
  }
  return item;
}

// One listing on screen and the reading of its further pages.
export class Listing {
  constructor(actions) {
    this.actions = actions;
    this.path = '';
    this.rows = [];
    this.count = 0;
    this.pageSize = 25;
    this.loading = false;
    this.observer = new IntersectionObserver((entries) => {
      if (entries.some((e) => e.isIntersecting)) this.more();
    });
    this.observer.observe(document.getElementById('more'));
  }

  show(listing) {
    this.path = listing.path;
    this.rows = [];
    this.count = listing.count;
    this.pageSize = Math.max(1, listing.to - listing.from + 1);
    document.getElementById('title').textContent = listing.roles?.title || 'Untitled';
    document.getElementById('description').textContent = listing.roles?.description ?? '';
    rowsList().replaceChildren();
    this.append(listing.rows);
  }

  append(rows) {
    const start = this.rows.length;
    this.rows.push(...rows);
    rowsList().append(...rows.map((row, i) => rowItem(row, start + i, this.actions)));
    const shown = this.rows.length;
    document.getElementById('count').textContent =
      this.count === 0 ? 'No rows' : `${shown} of ${this.count} rows`;
    document.getElementById('more').hidden = shown >= this.count;
  }

  async more() {
    if (this.loading || this.rows.length >= this.count) return;
    this.loading = true;
    const path = this.path;
    const from = this.rows.length;
    const answer = await call('rows', { query: { path, from, to: from + this.pageSize - 1 } });
    this.loading = false;
    if (path !== this.path) return;
    if (answer.error) {
      showError(answer.error);
      return;
    }
    this.count = answer.count;
    this.append(answer.rows);
    // A tall screen may show the end of the list before anything scrolls.
    const more = document.getElementById('more');
    if (!more.hidden && more.getBoundingClientRect().top < innerHeight) this.more();
  }

  // The rows changed under us: read again what is shown.
  async reload() {
    const path = this.path;
    const answer = await call('rows', { query: { path, from: 0, to: Math.max(this.rows.length, this.pageSize) - 1 } });
    if (path !== this.path || answer.error || answer.dialog) return;
    const focused = document.activeElement?.dataset?.index;
    this.count = answer.count;
    this.rows = [];
    rowsList().replaceChildren();
    this.append(answer.rows);
    if (focused !== undefined) rowsList().querySelector(`[data-index="${focused}"]`)?.focus();
  }

  focusRow(index) {
    const buttons = [...rowsList().querySelectorAll('button.row')];
    buttons[Math.max(0, Math.min(index, buttons.length - 1))]?.focus();
  }
}
