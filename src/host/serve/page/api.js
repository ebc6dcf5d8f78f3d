// Every request of the page goes through here. Answers are the JSON objects
// of tarn-host --json; a failure of any kind comes back as {error: {name,
// message}}, so that callers have one thing to look at.
export async function call(route, { query = {}, body } = {}) {
  const url = new URL(`/api/${route}`, location.origin);
  for (const [key, value] of Object.entries(query)) url.searchParams.set(key, value);
  const init = body === undefined ? {} : {
    method: 'POST',
    headers: { 'Content-Type': 'application/json' },
    body: JSON.stringify(body),
  };
  let response;
  try {
    response = await fetch(url, init);
  } catch (e) {
    return { error: { name: 'network', message: `tarn-host does not answer (${e.message})` } };
  }
  if (!response.ok) {
    const text = (await response.text()).trim();
    return { error: { name: `http ${response.status}`, message: text || response.statusText } };
  }
  return response.json();
}

// The host's events: handlers by event type, each given the event's object
// and number. opened hears the stream's first opening: from then on no
// event is missed.
export function listen(handlers, opened) {
  const source = new EventSource('/api/events');
  for (const [type, handle] of Object.entries(handlers)) {
    source.addEventListener(type, (event) => handle(JSON.parse(event.data), Number(event.lastEventId)));
  }
  if (opened) source.addEventListener('open', opened, { once: true });
  return source;
}
