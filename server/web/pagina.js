'use strict';
// The page: it requests everything about melodies from /api/v1, and draws and plays the results.
// Text from outside is shown only as text (textContent), never as HTML.

const $ = (id) => document.getElementById(id);

// Creates an element with properties ("onclick", "className" …), attributes and children.
function el(name, properties = {}, ...children) {
  const element = document.createElement(name);
  for (const [key, value] of Object.entries(properties)) {
    if (key in element) element[key] = value;
    else element.setAttribute(key, value);
  }
  element.append(...children);
  return element;
}

const SVG = 'http://www.w3.org/2000/svg';
function svg(name, attributes, ...children) {
  const element = document.createElementNS(SVG, name);
  for (const [key, value] of Object.entries(attributes)) element.setAttribute(key, value);
  element.append(...children);
  return element;
}

// ---- The server ---------------------------------------------------------------------------------

const MOST_BYTES = 256 * 1024; // that a request may carry
let asked = 0; // requests under way, which a line at the top shows

function wait(more) {
  asked += more;
  document.body.classList.toggle('espera', asked > 0);
}

async function ask(path, body, signal, type = 'text/plain; charset=utf-8') {
  if ((body?.size ?? body?.length) > MOST_BYTES) throw new Error('Es demasiado grande: caben 256 KiB.');
  wait(1);
  try {
    const reply = await fetch('/api/v1/' + path, body === undefined ? { signal }
      : { method: 'POST', body, signal, headers: { 'Content-Type': type } });
    if (reply.ok) return await (reply.headers.get('Content-Type') === 'application/json' ? reply.json() : reply.blob());
    const problem = await reply.json().catch(() => ({}));
    throw new Error(problem.detail || 'El servidor contesta ' + reply.status + '.');
  } catch (error) {
    if (error.constructor === Error || error.name === 'AbortError') throw error;
    throw new Error('El servidor no contesta. Mira la conexión y prueba otra vez.');
  } finally {
    wait(-1);
  }
}
const query = (fields) => '?' + new URLSearchParams(fields);

let saying;
function say(words) {
  (document.querySelector('dialog[open]') || document.body).append($('aviso')); // a dialog covers the rest
  $('aviso').textContent = words;
  clearTimeout(saying);
  saying = setTimeout(() => { $('aviso').textContent = ''; }, 3000 + 50 * words.length);
}
// For event handlers: shows a failure, in the element `place` if given; an aborted request is not a failure.
const tried = (work, place) => async (...event) => {
  try {
    await work(...event);
  } catch (error) {
    if (error.name === 'AbortError') return;
    if (place) $(place).textContent = error.message;
    else say(error.message);
  }
};

function later(work, ms) {
  let timer;
  return () => { clearTimeout(timer); timer = setTimeout(work, ms); };
}

// Settings in localStorage; nothing is stored if the browser forbids it.
const kept = {
  get(key) { try { return JSON.parse(localStorage.getItem(key)); } catch { return null; } },
  set(key, value) { try { localStorage.setItem(key, JSON.stringify(value)); } catch { /* private */ } },
};

async function copy(text, done) {
  try {
    await navigator.clipboard.writeText(text);
  } catch { // only pages from https may use the clipboard
    const area = el('textarea', { value: text });
    (document.querySelector('dialog[open]') || document.body).append(area);
    area.select();
    document.execCommand('copy');
    area.remove();
  }
  say(done);
}

// ---- Searching ----------------------------------------------------------------------------------

let searching = new AbortController();

// Lists melodies to choose from: of the server ({fichero, nombre}), or complete ({nombre, rtttl, cambios}), among
// them the voices of a MIDI file with their description (voz).
function showList(melodies, words) {
  $('cuenta').textContent = words;
  $('lista').replaceChildren(...melodies.map((melody) => el('li', {}, el('button', {
    type: 'button',
    onclick: tried(async (event) => {
      mark(event.currentTarget);
      open(melody.rtttl ?? (await ask('melodias/' + encodeURIComponent(melody.fichero))).rtttl, melody.fichero);
      say((melody.cambios ?? []).join(' '));
    }),
  }, ...labels(melody)))));
}

// Shows "Flauta, canal 2, 24 notas" in two lines.
function labels({ nombre, voz }) {
  if (!voz) return [nombre || 'Sin nombre'];
  const [first, ...rest] = voz.split(', ');
  return [first, el('small', { textContent: rest.join(', ') })];
}

function mark(button) {
  for (const other of $('lista').querySelectorAll('[aria-current]')) {
    other.removeAttribute('aria-current');
  }
  button.setAttribute('aria-current', 'true');
}

const counted = (number) => number === 1 ? '1 melodía' : number + ' melodías';

const search = tried(async () => {
  searching.abort();
  searching = new AbortController();
  const texto = $('texto').value.trim();
  const { melodias } = await ask('buscar' + query({ texto, maximo: 100 }), undefined, searching.signal);
  showList(melodias, !texto ? (melodias.length ? 'Lo último que ha llegado' : 'Todavía no hay ninguna melodía. Sube la primera.')
    : melodias.length === 0 ? 'No hay ninguna. Prueba con menos palabras, o solo con su principio.'
      : counted(melodias.length) + (melodias.length === 100 ? ' o más' : ''));
}, 'cuenta');

// ---- Own melodies -------------------------------------------------------------------------------

// Lists the faults of the pasted text, and `changes` that led to it.
const check = tried(async (changes = []) => {
  const text = $('pegado').value;
  kept.set('pegado', text);
  const result = text.trim() ? await ask('comprobar', text) : { frase: '', fallos: [] };
  if (text !== $('pegado').value) return;
  $('p-frase').textContent = result.frase;
  $('p-frase').className = result.correcta ? 'bien' : 'mal';
  $('p-fallos').replaceChildren(...[...result.fallos.slice(1, 6).map((fault) => fault.frase), ...changes]
    .map((textContent) => el('li', { textContent })));
  $('p-usar').disabled = !result.correcta;
  $('p-arreglar').hidden = result.correcta || !text.trim();
});

// Opens the result of a repair or a file: a single melody at once; several, or the voices of a MIDI file, as a
// list, the tune first.
function take({ melodias, voces = [] }, where) {
  if (melodias.length === 0) throw new Error('Ahí no hay ninguna melodía que se entienda.');
  $('texto').value = '';
  const voices = voces.length > 1;
  const found = voices ? voces.sort((one, other) => other.melodia - one.melodia) : melodias;
  showList(found, voices ? `${found.length} voces de ${where}: elige una` : counted(found.length) + ' de ' + where);
  if (found.length > 1) {
    location.hash = '';
    $('propia').open = false;
    document.body.dataset.vista = 'lista';
    $('lista').querySelector('button').focus();
    return;
  }
  $('pegado').value = found[0].rtttl;
  const { cambios } = found[0];
  check(cambios);
  say(cambios.slice(0, 3).join(' ') + (cambios.length > 3 ? ' Y más, debajo de lo pegado.' : '') || 'No había nada que arreglar.');
  open(found[0].rtttl);
}

const openFile = tried(async (file) => {
  if (!file) return;
  await file.slice(0, 1).arrayBuffer().catch(() => { // fetch would blame the connection
    throw new Error('No se puede leer: elige un fichero, no una carpeta.');
  });
  const about = phone ? { fichero: file.name, modelo: form().modelo } : { fichero: file.name };
  take(await ask('importar' + query(about), file, undefined, 'application/octet-stream'), file.name);
});

// ---- The melody ---------------------------------------------------------------------------------

let rtttl = ''; // the melody shown
let stored = new Set(); // melodies that came from the server
let notes = { notas: [], duracion: 0 };
let conversion = null;

// The URL contains the melody; shows it.
function addressOf(text) {
  return '#' + encodeURIComponent(text).replace(/%(2C|3A|3D|2F)/g, decodeURIComponent);
}
function melodyOfAddress() {
  const text = location.hash.slice(1);
  try { return decodeURIComponent(text); } catch { return text; }
}

function open(text, file) {
  if (file) stored.add(text);
  if (melodyOfAddress() === text) show();
  else location.hash = addressOf(text);
}

// Clears the previous melody while the new one is requested.
function clear() {
  setPace(false);
  document.querySelector('dialog[open]')?.close();
  notes = { notas: [], duracion: 0 };
  $('tocar').disabled = true;
  $('dibujo').replaceChildren();
  named(rtttl.split(':')[0].trim());
  $('medida').textContent = '';
  $('medida').className = 'mal';
}

function named(name) {
  $('nombre').textContent = name || 'Sin nombre';
  document.title = (rtttl ? $('nombre').textContent + ' – ' : '') + 'Tonadex';
}

const show = tried(async () => {
  stop();
  const text = melodyOfAddress(), other = text !== rtttl;
  rtttl = text;
  if (other) clear();
  document.body.dataset.vista = text ? 'melodia' : 'lista';
  $('abierta').hidden = !text;
  $('bienvenida').hidden = Boolean(text);
  if (!text) return;
  if (other && matchMedia('(max-width: 899px)').matches) {
    scrollTo(0, 0);
    $('nombre').focus({ preventScroll: true });
  }
  const [checked] = await Promise.all([ask('comprobar', text), draw(), convert()]);
  if (text !== rtttl) return;
  named(checked.nombre);
  $('medida').textContent = checked.frase;
  $('medida').className = checked.correcta ? 'suave' : 'mal';
}, 'medida');

async function draw() {
  const text = rtttl;
  const answer = await ask('notas' + (phone ? query({ modelo: form().modelo }) : ''), text);
  if (text !== rtttl) return;
  notes = answer;
  $('tocar').disabled = !notes.notas.some((note) => note.tono !== null);
  $('dibujo').setAttribute('aria-label', 'Dibujo de la melodía: ' + notes.palabras);
  $('dibujo').replaceChildren(picture());
}

// Time to the right, pitch upward, a line per bar; `marks` are the notes' rectangles.
let marks = [];
function picture() {
  const height = 160, margin = 16, room = $('dibujo').clientWidth || 320;
  const shortest = Math.min(...notes.notas.map((note) => note.duracion), 1000);
  const whole = (room - 2 * margin) / Math.max(notes.duracion, 1), legible = Math.min(10 / shortest, 0.2);
  const perMs = legible > 1.25 * whole ? legible : whole; // nothing to scroll for a few pixels
  const width = notes.duracion * perMs + 2 * margin;
  const pitches = notes.notas.filter((note) => note.tono !== null).map((note) => note.tono);
  const low = Math.min(...pitches, 127) - 1, span = Math.max(Math.max(...pitches, 0) - low + 1, 12);
  const x = (ms) => margin + ms * perMs;
  const y = (pitch) => height - margin - 8 - (pitch - low) / span * (height - 2 * margin - 8);
  const image = svg('svg', { width, height, viewBox: `0 0 ${width} ${height}`, 'aria-hidden': 'true' },
    svg('pattern', { id: 'rayas', width: 5, height: 5, patternUnits: 'userSpaceOnUse', patternTransform: 'rotate(45)' },
      svg('line', { x1: 0, y1: 0, x2: 0, y2: 5, 'stroke-width': 3 })));
  for (let at = notes.compas; at > 0 && at < notes.duracion; at += notes.compas) {
    image.append(svg('line', { x1: x(at), y1: margin, x2: x(at), y2: height - margin }));
  }
  marks = notes.notas.map((note) => {
    const left = x(note.inicio), long = Math.max(note.duracion * perMs - 1.5, 1.5);
    const silent = note.tono === null;
    const bar = svg('rect', { x: left, width: long, rx: Math.min(4, long / 2), height: silent ? 4 : 12,
      y: silent ? height / 2 : y(note.tono), class: silent ? 'pausa' : note.fuera ? 'fuera' : '' });
    image.append(bar);
    if (note.puntillo) image.append(svg('circle', { cx: left + long - 3, cy: (silent ? height / 2 : y(note.tono)) - 4, r: 2 }));
    if (!silent && long > 24) {
      image.append(svg('text', { x: left + long / 2, y: y(note.tono) - 5 }, note.nombre));
    }
    return bar;
  });
  return image;
}

// ---- Listening ----------------------------------------------------------------------------------

const LOUD = 0.12, LEAD = 0.1, BREATH = 0.92; // s before the first note; the part of a note that sounds
let context = null; // of all sound: browsers let a click start it, and no timer
let sounding = null; // {wave, start}

// A square wave, like a phone's; each note is one step of frequency and volume.
function sound(list, ms) {
  stop();
  context ??= new AudioContext();
  context.resume();
  const wave = new OscillatorNode(context, { type: 'square' });
  const volume = new GainNode(context, { gain: 0 });
  wave.connect(volume).connect(context.destination);
  const start = context.currentTime + LEAD;
  for (const note of list) {
    if (note.tono === null) continue;
    const at = start + note.inicio / 1000;
    wave.frequency.setValueAtTime(440 * 2 ** ((note.tono - 69) / 12), at);
    volume.gain.setValueAtTime(LOUD, at);
    volume.gain.setValueAtTime(0, at + note.duracion * BREATH / 1000);
  }
  wave.onended = stop;
  wave.start(start);
  wave.stop(start + ms / 1000);
  sounding = { wave, start };
}

function play() {
  sound(notes.notas, notes.duracion);
  $('tocar').textContent = 'Parar';
  requestAnimationFrame(follow);
}

function follow() {
  if (!sounding) return;
  const ms = (context.currentTime - sounding.start) * 1000;
  const now = notes.notas.findIndex((note) => ms >= note.inicio && ms < note.inicio + note.duracion);
  marks.forEach((bar, index) => bar.classList.toggle('suena', index === now));
  if (now >= 0) {
    const left = Number(marks[now].getAttribute('x')), view = $('dibujo');
    if (left < view.scrollLeft || left > view.scrollLeft + view.clientWidth - 80) view.scrollLeft = left - 40;
  }
  requestAnimationFrame(follow);
}

function stop() {
  if (!sounding) return;
  sounding.wave.onended = null;
  sounding.wave.disconnect();
  sounding.wave.stop();
  context.suspend();
  sounding = null;
  marks.forEach((bar) => bar.classList.remove('suena'));
  $('tocar').textContent = 'Escuchar';
}

// ---- My phone -----------------------------------------------------------------------------------

let models = [];
let phone = null; // {nombre, modelo, forma}: the phone's own row, and the row chosen for it
const rowOf = (modelo) => models.find((row) => row.modelo === modelo);

// The formats for this phone: its own row, then those of its make.
function forms() {
  const own = rowOf(phone.modelo);
  const others = models.filter((row) => row.marca === own.marca && row.moviles.length === 0
    && row.formato !== own.formato);
  return [own, ...others];
}
const form = () => rowOf(phone.forma);

// A composer that shows notes is typed with keys, if its make has only one row with keys.
function bestFor(row) {
  const typed = models.filter((other) => other.marca === row.marca && other.moviles.length === 0 && other.teclado);
  return row.moviles.length && row.clase === 'notas' && !row.teclado && typed.length === 1 ? typed[0] : row;
}

function choose(nombre, row) {
  phone = { nombre, modelo: row.modelo, forma: bestFor(row).modelo };
  phoneChosen();
}

function phoneChosen() {
  kept.set('movil', phone);
  $('movil').textContent = phone.nombre;
  $('forma').replaceChildren(...forms().map((row) => el('option',
    { value: row.modelo, textContent: row.recibe.split(/[,.]/)[0] })));
  $('forma').value = phone.forma;
  $('r-recibe').textContent = form().recibe;
  if (rtttl) tried(() => Promise.all([draw(), convert()]))();
}

// The phones by number, then the formats.
function choices() {
  const named = (row, nombre) => ({ nombre: nombre.includes(row.marca) ? nombre : row.marca + ' ' + nombre, row });
  return [...models.flatMap((row) => row.moviles.map((nombre) => named(row, nombre))),
    ...models.filter((row) => row.moviles.length === 0).map((row) => named(row, row.modelo.trim()))];
}

function listPhones() {
  const words = $('m-texto').value.toLowerCase().split(/\s+/).filter(Boolean);
  const fit = choices().filter(({ nombre }) => words.every((word) => nombre.toLowerCase().split(/[\s(-]+/)
    .some((part) => part.startsWith(word))));
  $('m-lista').replaceChildren(...fit.map(({ nombre, row }) => {
    const button = el('button', { type: 'button', onclick: () => { $('moviles').close(); choose(nombre, row); } },
      nombre, el('small', { textContent: bestFor(row).recibe }));
    if (phone?.nombre === nombre) button.setAttribute('aria-current', 'true');
    return el('li', {}, button);
  }));
  $('m-nada').textContent = fit.length ? '' : 'No está. Elige uno parecido de su marca, o un formato.';
}

function askPhone() {
  $('m-texto').value = '';
  listPhones();
  $('moviles').showModal();
}

// ---- Converting ---------------------------------------------------------------------------------

const OF_RESULT = ['teclear', 'copiar', 'guardar', 'imprimir'];

async function convert() {
  $('r-elige').hidden = Boolean(phone);
  $('r-hecho').hidden = !phone;
  if (!phone) return;
  const text = rtttl, { modelo } = form();
  conversion = null;
  $('resultado').replaceChildren();
  for (const id of OF_RESULT) $(id).disabled = true;
  const result = await ask('convertir' + query({ modelo, pasos: 1 }), text);
  if (text === rtttl && modelo === form().modelo) {
    conversion = result;
    for (const id of OF_RESULT) $(id).disabled = false;
    showConversion();
  }
}

function showConversion() {
  const row = form(), { resultado, pasos, mensajes, avisos, tempo } = conversion;
  $('r-titulo').textContent = 'Para ' + phone.nombre;
  $('r-entrada').textContent = row.entrada;
  // A file result is just saved: the program's questions about where to save do not apply here.
  $('r-mensajes').textContent = row.clase === 'fichero' ? '' : mensajes.join(' ');
  $('r-avisos').textContent = avisos.replace(/\r\n/g, '\n').trim() + (tempo && '\nTempo: ' + tempo);
  $('teclear').hidden = pasos.length === 0;
  $('copiar').hidden = $('resultado').hidden = !resultado;
  $('imprimir').hidden = !resultado;
  const groups = pasos.filter((step) => step.grupo);
  $('resultado').replaceChildren(...groups.length === 0 ? [resultado.replace(/\r\n/g, '\n')]
    : groups.map((step) => el('span', { className: 'grupo' }, ...heldMarked(step.grupo), ' ')));
  $('guardar').classList.toggle('fuerte', row.clase === 'fichero');
}

// "(3)9": a held key is drawn bold.
const heldMarked = (group) => group.split(/(\([^)]*\))/).filter(Boolean)
  .map((part) => part.startsWith('(') ? el('b', { textContent: part }) : part);

const safeName = () => ($('nombre').textContent || 'melodia').replace(/[\\/:*?"<>|]/g, '_');

let formats = [];
async function save(wanted) {
  const { formato, extension } = formats.find((format) => format.formato === wanted);
  const href = URL.createObjectURL(await ask('fichero' + query({ formato }), rtttl));
  el('a', { href, download: safeName() + '.' + extension }).click();
  setTimeout(() => URL.revokeObjectURL(href), 1000);
}

function listFormats() {
  $('formatos').replaceChildren(...formats.map(({ formato, nombre, extension, limites }) => el('li', {}, el('button',
    { type: 'button', onclick: tried(() => save(formato)) },
    `${nombre} (.${extension})`, el('small', { textContent: limites })))));
}

// ---- Transposing --------------------------------------------------------------------------------

const tones = [[12, 'Una octava más agudo'], [1, 'Un semitono más agudo'], [-1, 'Un semitono más grave'],
  [-12, 'Una octava más grave']];

function listTones() {
  $('tonos').replaceChildren(...tones.map(([semitonos, textContent]) => el('li', {}, el('button', {
    type: 'button', textContent,
    onclick: tried(async () => open((await ask('transportar' + query({ semitonos }), rtttl)).melodias[0].rtttl)),
  }))));
}

// ---- Sharing ------------------------------------------------------------------------------------

const local = /^(localhost|127\.|\[::1\])/.test(location.hostname);

function share() {
  const url = location.origin + '/' + addressOf(rtttl);
  $('e-url').value = url;
  $('e-local').hidden = !local;
  $('e-mandar').hidden = !navigator.share;
  $('e-qr').hidden = true;
  $('e-qr').src = '/api/v1/qr' + query({ texto: url });
  $('e-subir').disabled = stored.has(rtttl);
  $('e-dicho').textContent = stored.has(rtttl) ? 'Esta melodía ya está en el servidor.' : '';
  $('enlace').showModal();
}

async function upload() {
  const text = rtttl;
  $('e-subir').disabled = true;
  try {
    await ask('melodias', text);
    stored.add(text);
    $('e-dicho').textContent = 'La melodía está en el servidor. ¡Gracias!';
    search();
  } catch (error) {
    $('e-dicho').textContent = error.message;
    $('e-subir').disabled = false;
  }
}

// ---- Teclear ------------------------------------------------------------------------------------

let at = 0; // the group to press
let pace = 0; // the timer of "Avanzar solo", 0 while it is off
let awake = null; // keeps the screen on
const guide = { sonido: false, segundos: 4, ...kept.get('guia') };
const steps = () => conversion?.pasos ?? []; // none while the server converts
const placeOf = () => phone.forma + '|' + rtttl;
const pressed = (key) => key.mantener ? 'mantén 3 s' : key.veces > 1 ? '×' + key.veces : '';
const spoken = { '*': 'asterisco', '#': 'almohadilla', '<': 'izquierda', '^': 'arriba', '>': 'derecha' };

function openGuide() {
  stop();
  const place = (kept.get('lugares') || []).find(([name]) => name === placeOf());
  at = place && place[1] < steps().length - 1 ? place[1] : 0;
  $('g-titulo').textContent = $('nombre').textContent + ', para ' + phone.nombre;
  $('guia').showModal();
  $('g-sigue').focus();
  showStep();
  soundStep();
  stayAwake();
}

function go(to) {
  const done = to >= steps().length;
  at = done ? 0 : Math.max(to, 0);
  kept.set('lugares', [[placeOf(), at], ...(kept.get('lugares') || []).filter(([name]) => name !== placeOf())].slice(0, 64));
  showStep();
  if (done) {
    $('guia').close();
    say('¡Ya está! Guárdala en el móvil y escúchala.');
  } else {
    soundStep();
  }
}

// The group's note; a dot typed as its own group belongs to the previous note.
function soundStep() {
  stop();
  const { nota } = steps()[at];
  const note = notes.notas.find((one) => one.nota === nota);
  if (guide.sonido && note && nota !== steps()[at - 1]?.nota) sound([{ ...note, inicio: 0 }], note.duracion);
}

// Advances by itself until the last group; each step restarts the timer.
function setPace(on) {
  clearTimeout(pace);
  const last = at >= steps().length - 1;
  pace = on && !last ? setTimeout(() => go(at + 1), guide.segundos * 1000) : 0;
  $('g-solo').textContent = pace ? 'Parar' : 'Avanzar solo';
  disable('g-solo', last);
}

// Moves the focus into the guide when the focused button is disabled.
function disable(id, off) {
  if (off && document.activeElement === $(id)) $('g-sigue').focus();
  $(id).disabled = off;
}

function wish(change) {
  kept.set('guia', Object.assign(guide, change));
  $('g-oir').setAttribute('aria-pressed', guide.sonido);
  $('g-cada').value = guide.segundos;
}

// The browser releases the wake lock when the page is hidden.
async function stayAwake() {
  try {
    const lock = await navigator.wakeLock?.request('screen');
    if ($('guia').open) awake = lock;
    else lock?.release();
  } catch { /* saving power */ }
}

function closed() {
  setPace(false);
  stop();
  awake?.release();
  awake = null;
}

function seen() {
  if (!$('guia').open) return;
  if (document.hidden) setPace(false);
  else stayAwake();
}

function showStep() {
  const step = steps()[at], last = steps().length - 1;
  $('g-lugar').textContent = `${at + 1} de ${last + 1}`;
  $('g-barra').setAttribute('aria-valuemax', last + 1);
  $('g-barra').setAttribute('aria-valuenow', at + 1);
  $('g-barra').firstElementChild.style.width = (at + 1) / (last + 1) * 100 + '%';
  $('g-grupo').replaceChildren(...step.teclas.length === 0 ? [el('span', { className: 'nada', textContent: 'ninguna tecla' })]
    : step.teclas.map((key) => el('span', {}, el('b', { textContent: key.tecla }), pressed(key))));
  $('g-palabras').textContent = step.palabras;
  const next = steps().slice(at + 1, at + 4).map((other) => el('span', { textContent: other.grupo || '–' }));
  $('g-despues').replaceChildren(next.length ? 'Después ' : `Es el último grupo. Tempo: ${conversion.tempo}`, ...next);
  $('g-pantalla').hidden = !step.pantalla;
  $('g-pantalla').lastElementChild.textContent = step.pantalla || '';
  $('g-teclado').replaceChildren(...form().teclado.teclas.map((key) => {
    const now = step.teclas.filter((press) => key.signos.includes(press.tecla));
    return el('div', { className: now.length ? 'pulsa' : '' }, el('b', { textContent: key.tecla }),
      el('i', { textContent: (now.map(pressed).find(Boolean) || '').replace(' 3 s', '') }), key.palabra);
  }));
  $('g-voz').textContent = `${at + 1} de ${last + 1}: ` + step.teclas.map((key) => (spoken[key.tecla] || key.tecla)
    + (key.mantener ? ', mantenida 3 segundos' : key.veces > 1 ? ` ${key.veces} veces` : '')).join(', ')
    + '. ' + step.palabras + (step.pantalla ? '. En la pantalla debe verse ' + step.pantalla : '');
  disable('g-antes', at === 0);
  $('g-sigue').textContent = at === last ? 'Terminar' : 'Siguiente';
  setPace(pace !== 0);
}

function guideKey(event) {
  const to = { ArrowRight: at + 1, ArrowLeft: at - 1, Backspace: at - 1, Home: 0, End: steps().length - 1,
    ' ': at + 1, Enter: at + 1 }[event.key];
  const own = event.target.closest('button') && (event.key === ' ' || event.key === 'Enter');
  if (to === undefined || own || event.target === $('g-cada')) return;
  event.preventDefault();
  if (to < steps().length || event.key === 'Enter' || event.key === ' ') go(to);
}

// A swipe turns pages, a tap continues.
let finger = null;
function guideUp(event) {
  if (!finger) return;
  const moved = event.clientX - finger.x, lower = Math.abs(event.clientY - finger.y);
  finger = null;
  if (Math.abs(moved) > 40 && Math.abs(moved) > lower) go(moved < 0 ? at + 1 : at - 1);
  else if (Math.abs(moved) < 10 && lower < 10) go(at + 1);
}

// ---- The sheet to print -------------------------------------------------------------------------

function fillSheet() {
  if (!rtttl || !conversion) return;
  const row = form();
  $('hoja').replaceChildren(el('h1', { textContent: $('nombre').textContent }),
    el('p', { textContent: `Para ${phone.nombre}. ${row.recibe} Tempo ${conversion.tempo}.` }),
    el('p', { textContent: row.entrada }),
    conversion.pasos.length ? el('div', { className: 'teclas' }, ...conversion.pasos.map((step, index) => el('div', {},
      el('small', { textContent: index + 1 }), el('b', { textContent: step.grupo || '–' }), el('small', { textContent: step.palabras }))))
      : el('pre', { textContent: conversion.resultado }),
    el('p', { className: 'lineas', textContent: conversion.avisos.replace(/\r\n/g, '\n') }));
}

// ---- The start ----------------------------------------------------------------------------------

function listen() {
  $('g-cada').replaceChildren(...Array.from({ length: 10 }, (_, second) => el('option',
    { value: second + 1, textContent: `cada ${second + 1} s` })));
  wish({});
  listTones();
  $('pegado').value = kept.get('pegado') || '';
  check();
  const on = (id, event, work) => $(id).addEventListener(event, tried(work));
  on('texto', 'input', later(search, 150));
  on('b-forma', 'submit', (event) => { event.preventDefault(); search(); });
  on('azar', 'click', async () => { $('texto').value = ''; showList((await ask('azar')).melodias, 'Diez al azar'); });
  on('pegado', 'input', later(check, 300));
  on('p-usar', 'click', () => open($('pegado').value.trim()));
  on('p-arreglar', 'click', async () => take(await ask('arreglar', $('pegado').value), 'lo pegado'));
  on('p-abrir', 'click', () => $('fichero').click());
  on('fichero', 'change', (event) => { openFile(event.target.files[0]); event.target.value = ''; });
  on('tocar', 'click', () => sounding ? stop() : play());
  on('aviso', 'click', () => say(''));
  on('c-busca', 'click', () => $('texto').focus());
  for (const id of ['movil', 'r-movil', 'c-movil']) on(id, 'click', askPhone);
  on('m-texto', 'input', listPhones);
  on('forma', 'change', (event) => { phone.forma = event.target.value; phoneChosen(); });
  on('copiar', 'click', () => copy(conversion.resultado, 'Copiado'));
  on('guardar', 'click', () => save(form().fichero));
  on('imprimir', 'click', () => print());
  on('compartir', 'click', share);
  on('e-copiar', 'click', () => copy($('e-url').value, 'Dirección copiada'));
  on('e-mandar', 'click', () => navigator.share({ title: $('nombre').textContent, url: $('e-url').value }));
  on('e-subir', 'click', upload);
  on('e-qr', 'load', () => { $('e-qr').hidden = local; });
  on('teclear', 'click', openGuide);
  on('g-antes', 'click', () => go(at - 1));
  on('g-sigue', 'click', () => go(at + 1));
  on('guia', 'keydown', guideKey);
  on('g-oir', 'click', () => { wish({ sonido: !guide.sonido }); soundStep(); });
  on('g-solo', 'click', () => setPace(pace === 0));
  on('g-cada', 'change', (event) => { wish({ segundos: Number(event.target.value) }); setPace(pace !== 0); });
  on('guia', 'close', closed);
  document.addEventListener('visibilitychange', seen);
  on('g-paso', 'pointerdown', (event) => { finger = event.button === 0 ? { x: event.clientX, y: event.clientY } : null; });
  on('g-paso', 'pointerup', guideUp);
  on('g-paso', 'pointercancel', () => { finger = null; });
  for (const button of document.querySelectorAll('[data-cierra]')) {
    button.addEventListener('click', () => button.closest('dialog').close());
  }
  addEventListener('hashchange', show);
  addEventListener('beforeprint', fillSheet);
  addEventListener('resize', later(() => { if (rtttl && !sounding) $('dibujo').replaceChildren(picture()); }, 200));
  const ofFiles = (event) => event.dataTransfer.types.includes('Files'); // the browser drops text into boxes
  addEventListener('dragover', (event) => {
    if (!ofFiles(event)) return;
    event.preventDefault();
    document.body.classList.add('suelta');
  });
  addEventListener('dragleave', (event) => { if (!event.relatedTarget) document.body.classList.remove('suelta'); });
  addEventListener('drop', (event) => {
    if (!ofFiles(event)) return;
    event.preventDefault();
    document.body.classList.remove('suelta');
    const [file, another] = event.dataTransfer.files;
    if (another) say('Suelta los ficheros de uno en uno.');
    else openFile(file);
  });
  for (const menu of document.querySelectorAll('.menu')) {
    document.addEventListener('click', (event) => {
      if (!menu.contains(event.target) || event.target.closest('li')) menu.open = false;
    });
    menu.addEventListener('keydown', (event) => {
      if (event.key !== 'Escape' || !menu.open) return;
      menu.open = false;
      menu.firstElementChild.focus();
    });
  }
}

const AGAIN_MS = 5000;

async function begin() {
  search();
  try {
    [{ modelos: models }, { formatos: formats }] = await Promise.all([ask('modelos'), ask('formatos')]);
  } catch (error) {
    say(error.message);
    setTimeout(begin, AGAIN_MS);
    return;
  }
  listFormats();
  const known = kept.get('movil');
  if (known && rowOf(known.modelo) && rowOf(known.forma)) {
    phone = known;
    phoneChosen();
  }
  show();
}

$('todo').hidden = $('movil').hidden = false;
listen();
begin();
