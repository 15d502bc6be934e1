// @ts-expect-error: not there in an ordinary browser
Tovik.Invoke('a');
if (window.Tovik) {
  // @ts-expect-error: no argument
  Tovik!.GetProperty();
  // @ts-expect-error: a refused kind of value
  window.Tovik.SetProperty('a', true);
  // @ts-expect-error: one argument
  window.Tovik.EnumProperty('a');
  // @ts-expect-error: a status is a number
  const status: string = window.Tovik.Invoke('a');
}
// @ts-expect-error: no such global may be made
window.Tovik = undefined;
// @ts-expect-error: a size is a number
TovikActions.resizePercent('50');
// @ts-expect-error: a status is a number
window.TovikMock!.handlers.invoke = name => name;
