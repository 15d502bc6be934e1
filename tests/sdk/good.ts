if (typeof Tovik !== 'undefined') {
  const texts: string[] = [Tovik.GetProperty('a'), Tovik.GetProperty(1), Tovik.EnumProperty('a', 2)];
  const nothing: null = Tovik.SetProperty(texts[0], 4.2);
  const invoke: (name: string) => number = Tovik.Invoke;
  console.log(nothing, invoke('b') | 0, window.Tovik === Tovik);
}
TovikActions.exit('CKR_OK', 1);
TovikActions.resizePixels(640, 0);
const link: string = TovikActions.urls.exit() + TovikActions.urls.resizePercent(50);
if (window.TovikMock) {
  window.TovikMock.handlers.invoke = name => name.length;
  console.log((window.TovikMock.answer ?? link + window.TovikMock.actions[0].name).length);
}
