// A dialog: asks for a name, has the plug-in sign with it, and answers with the signature.
'use strict';

const form = document.getElementById('form');
const field = document.getElementById('name');
const hint = document.getElementById('hint');

// Without a plug-in of your own yet: what the mock does in its place.
if (window.TovikMock) {
  TovikMock.handlers.invoke = command => {
    TovikMock.properties.set('Signature', 'signed by ' + TovikMock.properties.get('Name'));
    return command === 'Sign' ? 0 : 0x54;
  };
}

/** Has the plug-in sign; the signature, or null when it could not. */
function sign(name) {
  // Taken out of the object once: in loops this saves the look-up of every call.
  const invoke = Tovik.Invoke;
  Tovik.SetProperty('Name', name);
  return invoke('Sign') === 0 ? Tovik.GetProperty('Signature') : null;
}

function cancel() {
  TovikActions.exit('CKR_CANCEL');
}

form.addEventListener('submit', event => {
  event.preventDefault();
  const signature = sign(field.value);
  if (signature === null) {
    hint.textContent = 'The document could not be signed.';
    field.select();
  } else {
    TovikActions.exit('CKR_OK', signature);
  }
});
document.getElementById('cancel').addEventListener('click', cancel);
addEventListener('keydown', event => {
  if (event.key === 'Escape') {
    cancel();
  }
});
addEventListener('contextmenu', event => event.preventDefault());

if (typeof Tovik === 'undefined') {
  document.getElementById('notice').hidden = false;
  form.querySelector('[type=submit]').disabled = true;
}
