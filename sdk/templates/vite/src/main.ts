import { fit } from 'tovik-sdk';
import { cancel, sign } from './dialog';
import './style.css';

// Only while serving: a build has neither this branch nor the mock.
if (import.meta.env.DEV) {
  await import('./mock');
}

const form = document.querySelector('form')!;
const field = form.querySelector('input')!;
const hint = form.querySelector('#hint')!;

form.addEventListener('submit', event => {
  event.preventDefault();
  const fault = sign(field.value);
  if (fault) {
    hint.setAttribute('role', 'alert');
    hint.textContent = fault;
    fit();
  }
});
form.querySelector('[type=button]')!.addEventListener('click', cancel);
addEventListener('keydown', event => {
  if (event.key === 'Escape') {
    cancel();
  }
});
fit();
