// A dialog of the cloud (a form, a message, a row's menu) as a modal: its
// text, its fields, its buttons, links to open elsewhere and logins on a
// service's own page. It takes the focus and gives it back when it closes.
import { call } from './api.js';

const $ = (id) => document.getElementById(id);

export class Dialog {
  // actions.pressed(answer) hears what a press answered; actions.login(path)
  // starts a login on a service's page; actions.open(path) browses a list.
  constructor(actions) {
    this.actions = actions;
    this.element = $('dialog');
    this.listing = null;
    this.returnTo = null;
    $('dialog-close').addEventListener('click', () => this.close());
    this.element.addEventListener('close', () => {
      this.listing = null;
      this.returnTo?.focus();
    });
  }

  get isOpen() {
    return this.element.open;
  }

  show(listing) {
    const { dialog } = listing;
    if (!this.isOpen) this.returnTo = document.activeElement;
    this.listing = listing;
    this.element.dataset.kind = dialog.kind;
    $('dialog-title').textContent = listing.roles?.title || (dialog.kind === 'menu' ? 'Menu' : 'Message');
    this.error(null);
    const body = $('dialog-body');
    const buttons = $('dialog-buttons');
    body.replaceChildren();
    buttons.replaceChildren();
    if (dialog.text) {
      const text = document.createElement('p');
      text.className = 'text';
      text.textContent = dialog.text;
      body.append(text);
    }
    for (const field of dialog.fields ?? []) body.append(this.field(field));
    for (const button of dialog.buttons ?? []) buttons.append(this.button(button.title, () => this.press(button)));
    for (const list of dialog.lists ?? []) buttons.append(this.button(list.title, () => this.actions.open(list.path)));
    for (const login of dialog.logins ?? []) {
      buttons.append(this.button(login.title || 'Log in on the service\u2019s page', () => this.actions.login(listing.path)));
    }
    for (const link of dialog.links ?? []) {
      const a = document.createElement('a');
      a.href = link.url;
      a.target = '_blank';
      a.rel = 'noopener';
      a.textContent = link.title;
      buttons.append(a);
    }
    if (!this.isOpen) this.element.showModal();
    (body.querySelector('input, select') ?? buttons.querySelector('button, a'))?.focus();
  }

  close() {
    if (this.isOpen) this.element.close();
  }

  error(message) {
    $('dialog-error').hidden = !message;
    $('dialog-error').className = 'error';
    $('dialog-error').textContent = message ?? '';
  }

  // A word on what happens now, where errors show.
  note(text) {
    this.error(text);
    $('dialog-error').className = 'note';
  }

  button(title, onPress) {
    const button = document.createElement('button');
    button.type = 'button';
    button.textContent = title;
    button.addEventListener('click', onPress);
    return button;
  }

  field(field) {
    const label = document.createElement('label');
    label.className = 'field';
    const title = document.createElement('span');
    title.textContent = field.title + (field.required ? ' *' : '');
    let input;
    if (field.kind === 'select') {
      input = document.createElement('select');
      for (const option of field.options ?? []) input.append(new Option(option.title, option.value));
    } else {
      input = document.createElement('input');
      input.type = field.kind === 'password' ? 'password' : field.title.toLowerCase().includes('mail') ? 'email' : 'text';
      input.autocomplete = field.kind === 'password' ? 'current-password' : 'username';
    }
    input.value = field.value ?? '';
    input.required = Boolean(field.required);
    input.dataset.path = field.path;
    const problem = document.createElement('span');
    problem.className = 'problem';
    problem.setAttribute('aria-live', 'polite');
    input.addEventListener('change', () => this.setField(field, input, problem));
    label.append(title, input, problem);
    return label;
  }

  async setField(field, input, problem) {
    const answer = await call('set', { body: { path: field.path, role: 'value', value: input.value } });
    problem.textContent = answer.error ? answer.error.message : '';
    input.setAttribute('aria-invalid', answer.error ? 'true' : 'false');
    return !answer.error;
  }

  async press(button) {
    // A field typed into but not left yet still has to reach the module.
    for (const input of $('dialog-body').querySelectorAll('input, select')) {
      const field = this.listing.dialog.fields.find((f) => f.path === input.dataset.path);
      if (field && input.value !== (field.value ?? '')) {
        if (!(await this.setField(field, input, input.nextElementSibling))) return;
        field.value = input.value;
      }
    }
    const answer = await call('set', { body: { path: button.path, role: 'activate', value: true } });
    if (answer.error) {
      this.error(answer.error.message);
      // The module names the fields that break their rules.
      for (const field of this.listing?.dialog.fields ?? []) {
        if (answer.error.message.includes(`"${field.title}"`)) {
          const input = $('dialog-body').querySelector(`[data-path="${CSS.escape(field.path)}"]`);
          input?.setAttribute('aria-invalid', 'true');
          if (input) input.nextElementSibling.textContent = 'Check this field';
        }
      }
      return;
    }
    this.actions.pressed(answer);
  }
}
