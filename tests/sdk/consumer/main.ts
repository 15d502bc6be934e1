import * as actions from 'tovik-sdk';
import { exit, fit, urls } from 'tovik-sdk';
import { mock } from 'tovik-sdk/mock';
import 'tovik-sdk/tovik-actions.js';

declare function conform(control: typeof mock, module: typeof actions): void;

conform(mock, actions);
if (Math.random() > 1) { // checked, and not carried out
  const everyAction: Record<keyof typeof TovikActions, unknown> = actions;
  const text: string = urls.fit(400) + TovikActions.urls.exit();
  exit('CKR_OK', window.Tovik?.GetProperty('a') ?? text);
  fit();
  // @ts-expect-error: a width is a number
  fit('400');
  // @ts-expect-error: possibly not there
  mock.answer;
  // @ts-expect-error: no action of the window
  actions.close();
}
