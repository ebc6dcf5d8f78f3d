// Short messages that come and go: notifications of the module, and what a
// player's button answered.
const shelf = () => document.getElementById('toasts');

export function toast(text, { link, kind = 'info', seconds = 6 } = {}) {
  const note = document.createElement('div');
  note.className = `toast ${kind}`;
  note.textContent = text;
  if (link) {
    const a = document.createElement('a');
    a.href = link;
    a.target = '_blank';
    a.rel = 'noopener';
    a.textContent = 'Open';
    note.append(' ', a);
  }
  shelf().append(note);
  setTimeout(() => note.remove(), seconds * 1000);
}

// A failed request, in the module's own words.
export function showError(error) {
  const alert = document.getElementById('alert');
  if (!error) {
    alert.hidden = true;
    return;
  }
  alert.textContent = `${error.message} (${error.name})`;
  alert.hidden = false;
}
