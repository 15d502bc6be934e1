// The dialog: asks for the PIN, has the plug-in confirm it, and answers with the token that the
// plug-in issues. Without a plug-in it can only be cancelled.
'use strict';

const PIN_INCORRECT = 0xA0;

const element = id => document.getElementById(id);
const [form, pin, hint] = ['form', 'pin', 'hint'].map(element);

function exit(status, response) {
  location.href = 'tvk://exit?status=' + encodeURIComponent(status)
      + '&response=' + encodeURIComponent(response);
}

function say(text, kind) {
  hint.textContent = text;
  hint.className = kind;
}

/** Has the plug-in compare the PIN; true when it is the right one. */
function confirmPin() {
  Tovik.SetProperty('Pin', pin.value);
  const status = Tovik.Invoke('ConfirmPin');
  pin.value = '';
  if (status === 0) {
    say('PIN confirmed.', 'good');
    return true;
  }
  if (status === PIN_INCORRECT) {
    say('Wrong PIN, tries left: ' + Tovik.GetProperty('TriesLeft') + '.', 'bad');
  } else {
    say('The token is locked.', 'bad');
    form.querySelector('.primary').disabled = true;
  }
  return false;
}

form.addEventListener('submit', event => {
  event.preventDefault();
  if (confirmPin()) {
    exit('CKR_OK', Tovik.GetProperty('Token'));
  }
});
element('cancel').addEventListener('click', () => exit('CKR_CANCEL', ''));
addEventListener('keydown', event => {
  if (event.key === 'Escape') {
    exit('CKR_CANCEL', '');
  }
});
addEventListener('contextmenu', event => event.preventDefault());

/** Fills the dialog in by itself, slowly enough to watch. */
function runByItself(digits) {
  if (digits.length === 0) {
    setTimeout(() => form.requestSubmit(), 800);
    return;
  }
  pin.value += digits[0];
  setTimeout(runByItself, 250, digits.slice(1));
}

if (!window.Tovik) {
  say('No plug-in: this dialog can only be cancelled.', 'bad');
  form.querySelector('.primary').disabled = true;
} else {
  element('reader').textContent = Tovik.GetProperty('Reader');
  if (new URLSearchParams(location.search).has('auto')) {
    setTimeout(runByItself, 500, '2468');
  }
}
