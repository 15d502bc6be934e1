// The words of the dialog in both languages, and what the statuses of PKCS #11 mean to its user.
'use strict';

/** Names of the statuses that the dialog knows, which are also its answers to the caller. */
const STATUSES = {
  0x01: 'CKR_CANCEL',
  0x20: 'CKR_DATA_INVALID',
  0x32: 'CKR_DEVICE_REMOVED',
  0x50: 'CKR_FUNCTION_CANCELED',
  0x60: 'CKR_KEY_HANDLE_INVALID',
  0x68: 'CKR_KEY_FUNCTION_NOT_PERMITTED',
  0x70: 'CKR_MECHANISM_INVALID',
  0xA0: 'CKR_PIN_INCORRECT',
  0xA1: 'CKR_PIN_INVALID',
  0xA2: 'CKR_PIN_LEN_RANGE',
  0xA3: 'CKR_PIN_EXPIRED',
  0xA4: 'CKR_PIN_LOCKED',
  0xE0: 'CKR_TOKEN_NOT_PRESENT',
  0xE1: 'CKR_TOKEN_NOT_RECOGNIZED',
  0x102: 'CKR_USER_PIN_NOT_INITIALIZED',
  0x1C2: 'CKR_LIBRARY_LOAD_FAILED',
};

const ENGLISH = {
  title: 'Sign the document',
  lead: 'Your signature is made by your token.',
  token: 'Token',
  again: 'Search for tokens again',
  key: 'Key',
  pin: 'PIN',
  cancel: 'Cancel',
  close: 'Close',
  sign: 'Sign',
  hint: minimum => `At least ${minimum} characters`,
  reader: 'Enter the PIN at the reader.',
  noLogin: 'This token needs no PIN.',
  low: 'The last PIN was wrong. Few tries are left.',
  final: 'This is the last try before the token is locked.',
  module: 'Starting the security module ...',
  tokens: 'Looking for tokens ...',
  document: percent => `Reading the document: ${percent} %`,
  login: 'Logging in ...',
  signature: 'Signing. Leave the token in place.',
  done: 'The document is signed.',
  waiting: 'Waiting for a token ...',
  noBridge: 'This page has no connection to the token. Open it with the program that belongs to it.',
  CKR_CANCEL: 'The entry was cancelled at the reader.',
  CKR_DATA_INVALID: 'The document cannot be read.',
  CKR_DEVICE_REMOVED: 'The token was removed. Insert it again.',
  CKR_FUNCTION_CANCELED: 'The entry was cancelled at the reader.',
  CKR_KEY_HANDLE_INVALID: 'There is no key for signatures on this token. Insert another one.',
  CKR_KEY_FUNCTION_NOT_PERMITTED: 'This key may not be used for signatures. Choose another one.',
  CKR_MECHANISM_INVALID: 'The token cannot make this kind of signature. Choose another key.',
  CKR_PIN_INCORRECT: 'The PIN is wrong.',
  CKR_PIN_INVALID: 'The PIN has characters that the token does not accept.',
  CKR_PIN_LEN_RANGE: 'The PIN is too short or too long.',
  CKR_PIN_EXPIRED: 'The PIN has expired. Change it first.',
  CKR_PIN_LOCKED: 'The PIN is locked. Ask the issuer of the token to unlock it.',
  CKR_TOKEN_NOT_PRESENT: 'There is no token. Insert it, and it will be found.',
  CKR_TOKEN_NOT_RECOGNIZED: 'The token is not recognised. Insert it again.',
  CKR_USER_PIN_NOT_INITIALIZED: 'The token has no PIN yet. Set one first.',
  CKR_LIBRARY_LOAD_FAILED: 'The security module cannot be loaded. Ask your administrator.',
  unknown: status => `The token reports the error 0x${status.toString(16)}. Try again.`,
};

const GERMAN = {
  title: 'Dokument unterschreiben',
  lead: 'Die Unterschrift entsteht auf Ihrer Karte.',
  token: 'Karte',
  again: 'Erneut nach Karten suchen',
  key: 'Schlüssel',
  pin: 'PIN',
  cancel: 'Abbrechen',
  close: 'Schließen',
  sign: 'Unterschreiben',
  hint: minimum => `Mindestens ${minimum} Zeichen`,
  reader: 'Geben Sie die PIN am Kartenleser ein.',
  noLogin: 'Diese Karte braucht keine PIN.',
  low: 'Zuletzt war die PIN falsch. Nur wenige Versuche bleiben.',
  final: 'Dies ist der letzte Versuch, bevor die Karte gesperrt wird.',
  module: 'Das Sicherheitsmodul wird gestartet ...',
  tokens: 'Karten werden gesucht ...',
  document: percent => `Das Dokument wird gelesen: ${percent} %`,
  login: 'Anmeldung läuft ...',
  signature: 'Unterschrift läuft. Lassen Sie die Karte stecken.',
  done: 'Das Dokument ist unterschrieben.',
  waiting: 'Warten auf eine Karte ...',
  noBridge: 'Diese Seite erreicht keine Karte. Öffnen Sie sie mit dem zugehörigen Programm.',
  CKR_CANCEL: 'Die Eingabe wurde am Kartenleser abgebrochen.',
  CKR_DATA_INVALID: 'Das Dokument kann nicht gelesen werden.',
  CKR_DEVICE_REMOVED: 'Die Karte wurde entfernt. Stecken Sie sie wieder ein.',
  CKR_FUNCTION_CANCELED: 'Die Eingabe wurde am Kartenleser abgebrochen.',
  CKR_KEY_HANDLE_INVALID: 'Auf dieser Karte ist kein Schlüssel für Unterschriften.',
  CKR_KEY_FUNCTION_NOT_PERMITTED: 'Dieser Schlüssel darf nicht unterschreiben. Wählen Sie einen anderen.',
  CKR_MECHANISM_INVALID: 'Die Karte kann so nicht unterschreiben. Wählen Sie einen anderen Schlüssel.',
  CKR_PIN_INCORRECT: 'Die PIN ist falsch.',
  CKR_PIN_INVALID: 'Die PIN enthält Zeichen, die die Karte nicht annimmt.',
  CKR_PIN_LEN_RANGE: 'Die PIN ist zu kurz oder zu lang.',
  CKR_PIN_EXPIRED: 'Die PIN ist abgelaufen. Ändern Sie sie zuerst.',
  CKR_PIN_LOCKED: 'Die PIN ist gesperrt. Der Herausgeber der Karte kann sie entsperren.',
  CKR_TOKEN_NOT_PRESENT: 'Es steckt keine Karte. Stecken Sie sie ein, dann wird sie gefunden.',
  CKR_TOKEN_NOT_RECOGNIZED: 'Die Karte wird nicht erkannt. Stecken Sie sie noch einmal ein.',
  CKR_USER_PIN_NOT_INITIALIZED: 'Die Karte hat noch keine PIN. Legen Sie zuerst eine fest.',
  CKR_LIBRARY_LOAD_FAILED:
      'Das Sicherheitsmodul kann nicht geladen werden. Fragen Sie Ihre Systemverwaltung.',
  unknown: status => `Die Karte meldet den Fehler 0x${status.toString(16)}. Versuchen Sie es erneut.`,
};

const isGerman = /^de\b/i.test(navigator.language);
const TEXTS = isGerman ? GERMAN : ENGLISH;
document.documentElement.lang = isGerman ? 'de' : 'en';
for (const element of document.querySelectorAll('[data-text]')) {
  element.textContent = TEXTS[element.dataset.text];
}
for (const element of document.querySelectorAll('[data-label]')) {
  element.title = TEXTS[element.dataset.label];
  element.setAttribute('aria-label', element.title);
}
