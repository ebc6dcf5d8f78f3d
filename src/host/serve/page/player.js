// The browser is the device's player: it plays what the host orders over
// the event stream, and reports what its audio element does, so that the
// module and the cloud hear each state.
import { call } from './api.js';
import { toast } from './toast.js';

const $ = (id) => document.getElementById(id);

export class Player {
  constructor() {
    this.audio = $('audio');
    this.stream = 0;
    // The orders heard before restore() knows what plays.
    this.waiting = [];
    // Set while the page carries out an order, so that the audio element's
    // own event about it is not reported back as news.
    this.ordered = null;
    for (const [event, state] of [['playing', 'playing'], ['pause', 'paused'], ['ended', 'ended'], ['error', 'failed']]) {
      this.audio.addEventListener(event, () => this.report(state));
    }
    for (const button of document.querySelectorAll('#controls button')) {
      button.addEventListener('click', () => this.command(button.dataset.command));
    }
  }

  async play(path) {
    const answer = await call('play', { body: { path } });
    if (answer.error) toast(answer.error.message, { kind: 'error' });
    else this.say('preparing', answer.title);
  }

  // What plays as the host last told it, for a page that came anew: it
  // takes up the stream. Called once the event stream is open; the orders
  // heard meanwhile wait, and those the status did not know of follow it.
  async restore() {
    const status = await call('player');
    const waiting = this.waiting;
    this.waiting = null;
    if (!status.error) this.take(status);
    for (const [event, id] of waiting) {
      if (status.error || !(id <= status.lastEvent)) this.heard(event, id);
    }
  }

  take(status) {
    if (status.events) this.showHeard(status.events);
    if (status.state === 'stopped') return;
    if (!status.stream) {
      this.heard({ command: 'prepare', state: status.state, track: status.track, program: status.program });
      return;
    }
    if (status.state !== 'paused') {
      this.heard({ ...status, command: 'play' });
      return;
    }
    // Paused: the stream is ready to go on where the host says, silent.
    $('player').dataset.program = status.program;
    this.load(status);
    this.say(status.state);
  }

  load(event) {
    this.stream = event.stream;
    this.show(event.track);
    this.audio.loop = Boolean(event.live);
    this.audio.src = event.track.uri;
  }

  // What the host orders, as the stand-in streamer would have played it;
  // id is the event's number.
  heard(event, id) {
    if (this.waiting) {
      this.waiting.push([event, id]);
      return;
    }
    if (event.command === 'heard') {
      this.showHeard(event.events);
      return;
    }
    $('player').hidden = false;
    $('player').dataset.program = event.program ?? $('player').dataset.program ?? false;
    switch (event.command) {
      case 'play':
        this.load(event);
        this.audio.play().catch(() => {});
        break;
      case 'pause':
        this.ordered = 'paused';
        this.audio.pause();
        break;
      case 'resume':
        this.audio.play().catch(() => {});
        break;
      case 'prepare':
        this.say('preparing', event.track?.title);
        return;
      case 'stop':
        this.stream = 0;
        this.audio.pause();
        this.audio.removeAttribute('src');
        if (event.error) toast(`Playback stopped: ${event.error.message || event.error.name}`, { kind: 'error' });
        break;
    }
    this.say(event.state);
  }

  show(track) {
    $('track-title').textContent = track.title ?? '';
    $('track-artist').textContent = track.artist ?? '';
    $('cover').src = track.image ?? '';
    $('cover').hidden = !track.image;
    $('player').dataset.rating = track.rating ?? '';
  }

  say(state, title) {
    $('player').hidden = false;
    $('player').dataset.state = state;
    $('player-state').textContent = state;
    if (title) $('track-title').textContent = title;
  }

  async report(state) {
    // An element that reaches the end pauses first; the end is the news.
    if (!this.stream || (state === 'paused' && this.audio.ended)) return;
    if (this.ordered === state) {
      this.ordered = null;
      return;
    }
    await call('player/report', { body: { state, stream: this.stream } });
  }

  async command(what) {
    const answer = await call('player', { body: { command: what } });
    if (answer.error) {
      toast(answer.error.message, { kind: 'error', link: answer.error.offer?.url, seconds: 10 });
      return;
    }
    if (answer.reply) toast(`${answer.reply.title}: ${answer.reply.description}`);
    if (answer.rating) $('player').dataset.rating = answer.rating;
  }

  // What the cloud heard of this play, when the host can hear it: the host
  // sends all of it each time the cloud hears more.
  showHeard(events) {
    $('heard').textContent = events.length ? `cloud heard: ${events.join(', ')}` : '';
  }

  get playing() {
    return this.stream !== 0;
  }
}
