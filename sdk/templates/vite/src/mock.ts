// What stands in for your plug-in in an ordinary browser and in the tests.
import { mock } from 'tovik-sdk/mock';

if (mock) {
  const { handlers, properties } = mock;
  handlers.invoke = command => {
    if (command !== 'Sign') {
      return 0x54; // CKR_FUNCTION_NOT_SUPPORTED
    }
    properties.set('Signature', 'signed by ' + properties.get('Name'));
    return 0;
  };
}
