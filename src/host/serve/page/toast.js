// Short messages that come and go: notifications of the module, and what a
// player's button answered.
const shelf = () => document.getElementById('toasts');

// buttons: [{title, press}]; a notification with buttons stays longer, and
// goes once one is pressed.
export function toast(text, { link, kind = 'info', seconds = 6, buttons = [] } = {}) {
  const note = document.createElement('div');
  note.className = `toast ${kind}`;
  note.textContent = text;
  if (buttons.length) {
    const row = document.createElement('div');
    row.className = 'buttons';
    for (const { title, press } of buttons) {
      const button = document.createElement('button');
      button.type = 'button';
      button.textContent = title;
      button.addEventListener('click', () => {
        note.remove();
        press();
      });
      row.append(button);
    }
    note.append(row);
    seconds = Math.max(seconds, 20);
  }
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
