// Chooses the language of the dialog, and writes its words into the document.
'use strict';

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
