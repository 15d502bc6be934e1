import { mock as possibly } from 'tovik-sdk/mock';
import { expect, test } from 'vitest';
import page from '../index.html?raw';
import { NOT_SIGNED } from './dialog';

const mock = possibly!;
document.documentElement.innerHTML = page;
await import('./main');

const form = document.querySelector('form')!;
const hint = document.querySelector('#hint')!;

function enter(name: string): void {
  form.querySelector('input')!.value = name;
  form.requestSubmit();
}

test('the answer is the signature of the name', () => {
  enter('Ada');
  expect(mock.answer).toBe('signed by Ada');
});

test('a plug-in that fails leaves the dialog open, with a sentence', () => {
  const { answer, actions } = mock;
  const sign = mock.handlers.invoke;
  mock.handlers.invoke = () => 6;
  enter('Bob');
  mock.handlers.invoke = sign;
  expect(hint.textContent).toBe(NOT_SIGNED);
  expect(mock.answer).toBe(answer);
  expect(actions.at(-1)!.name).toBe('resize');
});

test('Escape cancels', () => {
  dispatchEvent(new KeyboardEvent('keydown', { key: 'Escape' }));
  expect(mock.answer).toBe('CKR_CANCEL');
});
