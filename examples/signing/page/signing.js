// The dialog: shows the document, lets its user choose token and key, asks for the PIN, and answers
// with the signature in base64. Closed with a problem on display, it answers with the name of that.
//
// Query: document=PATH, scheme=pss for RSA-PSS instead of PKCS #1.
'use strict';

const NO_KEY = 0x60;
const NO_TOKEN = 0xE0;
const SEARCH = 1500; // ms between two looks for a token

const query = new URLSearchParams(location.search);
const element = id => document.getElementById(id);
const [form, fields, tokenList, keyList, pin, sign] =
    ['form', 'fields', 'token', 'key', 'pin', 'sign'].map(element);

let answer = 'CKR_CANCEL'; // of the dialog when it is closed now
let known = [];

// ---- What is shown ----

/** Shows a problem until the next one; 0 removes it. */
function showProblem(status) {
  const name = STATUSES[status];
  answer = status === 0 ? 'CKR_CANCEL' : name || 'CKR_FUNCTION_FAILED';
  const problem = element('problem');
  problem.textContent = status === 0 ? '' : name ? TEXTS[name] : TEXTS.unknown(status);
  const reason = status === 0 ? '' : Tovik.GetProperty('Reason');
  if (reason !== '') {
    const small = document.createElement('small');
    small.textContent = reason;
    problem.append(small);
  }
  if (status !== 0) {
    problem.scrollIntoView({ block: 'nearest' });
  }
}

/** Puts the focus where the user goes on, and leaves a problem in sight. */
function goOn() {
  [pin, sign, tokenList, element('cancel')]
      .find(control => control.offsetParent && !control.matches(':disabled'))
      .focus({ preventScroll: answer !== 'CKR_CANCEL' });
}

/** Shows a step of the work; no text hides it. Only the document has a percentage. */
function showStep(text, percent) {
  element('step').textContent = text;
  const bar = element('progress');
  bar.classList.toggle('shown', text !== '');
  if (percent === undefined) {
    bar.removeAttribute('value');
  } else {
    bar.value = percent;
  }
}

function report(step, percent) {
  if (step === 'document') {
    showStep(TEXTS.document(percent), percent);
  } else {
    showStep(TEXTS[step]);
  }
}

/** Fills a list and keeps what was chosen in it. */
function fill(list, entries, text) {
  const chosen = list.value;
  list.replaceChildren(...entries.map(entry => new Option(text(entry), entry.id)));
  if (entries.some(entry => entry.id === chosen)) {
    list.value = chosen;
  }
}

const chosenToken = () => known.find(token => token.id === tokenList.value);

function showKeys() {
  const token = chosenToken();
  const keys = token ? keysOf(token) : [];
  fill(keyList, keys, key => `${key.label} (${key.type})`);
  const asksHere = token?.login === 'pin';
  pin.disabled = !asksHere || token.tries === 'locked';
  pin.required = asksHere;
  pin.minLength = asksHere ? token.minimum : 0;
  element('hint').textContent = !token ? ''
      : TEXTS[token.tries] ? TEXTS[token.tries]
      : token.login === 'reader' ? TEXTS.reader
      : !asksHere ? TEXTS.noLogin
      : token.minimum > 1 ? TEXTS.hint(token.minimum) : '';
  sign.disabled = keys.length === 0 || token.tries === 'locked';
  if (token && keys.length === 0) {
    showProblem(NO_KEY);
  } else if (token?.tries === 'locked') {
    showProblem(0xA4);
  }
}

function showTokens() {
  known = tokens();
  fields.hidden = known.length === 0;
  fill(tokenList, known, token => token.label);
  showKeys();
}

// ---- What is done ----

/** Carries out a command while the fields rest; returns its status. */
async function work(command) {
  fields.disabled = sign.disabled = true;
  const status = await carryOut(command, report);
  showStep('');
  fields.disabled = false;
  return status;
}

async function search() {
  const status = await work('ListTokens');
  showProblem(status);
  showTokens();
  if (status === NO_TOKEN) {
    waitForToken();
  }
  goOn();
}

/** Looks again and again, and says nothing new before a token is found. */
async function waitForToken() {
  showStep(TEXTS.waiting);
  await new Promise(resolve => setTimeout(resolve, SEARCH));
  const status = await carryOut('ListTokens', () => {});
  if (status === NO_TOKEN) {
    waitForToken();
    return;
  }
  showStep('');
  showProblem(status);
  showTokens();
  goOn();
}

async function signDocument() {
  showProblem(0);
  Tovik.SetProperty('Token', tokenList.value);
  Tovik.SetProperty('Key', keyList.value);
  Tovik.SetProperty('Pin', pin.value);
  pin.value = '';
  const status = await work('Sign');
  if (status === 0) {
    fields.disabled = sign.disabled = true;
    showStep(TEXTS.done, 100);
    TovikActions.exit('CKR_OK', Tovik.GetProperty('Signature'));
    return;
  }
  showTokens();
  showProblem(status);
  if (known.length === 0) {
    waitForToken();
  }
  goOn();
}

async function open() {
  const path = query.get('document') || '';
  Tovik.SetProperty('Document', path);
  Tovik.SetProperty('Scheme', query.get('scheme') || '');
  const status = await work('ReadDocument');
  if (status !== 0) {
    fields.hidden = true;
    element('cancel').textContent = TEXTS.close;
    showProblem(status);
    goOn();
    return;
  }
  element('document').hidden = false;
  element('name').textContent = path.slice(path.lastIndexOf('/') + 1);
  element('name').title = path;
  const bytes = atob(Tovik.GetProperty('Digest'));
  element('digest').textContent = Array.from(bytes, c => c.charCodeAt(0).toString(16).padStart(2, '0'))
      .join('').replace(/.{8}/g, '$& ');
  await search();
}

form.addEventListener('submit', event => {
  event.preventDefault();
  signDocument();
});
tokenList.addEventListener('change', () => {
  showProblem(0);
  showKeys();
});
element('again').addEventListener('click', search);
element('cancel').addEventListener('click', () => TovikActions.exit(answer));
addEventListener('keydown', event => {
  if (event.key === 'Escape') {
    TovikActions.exit(answer);
  }
});
addEventListener('contextmenu', event => {
  if (event.target !== pin) {
    event.preventDefault();
  }
});

if (window.Tovik && Tovik.GetProperty('State') !== '') {
  open();
} else {
  answer = 'CKR_FUNCTION_FAILED';
  fields.hidden = true;
  element('problem').textContent = TEXTS.noBridge;
  element('cancel').textContent = TEXTS.close;
  element('cancel').focus();
}
