import { type FormEvent, useLayoutEffect, useState } from 'react';
import { createRoot } from 'react-dom/client';
import { fit } from 'tovik-sdk';
import { cancel, sign } from './dialog';
import './style.css';

function Dialog() {
  const [name, setName] = useState('');
  const [fault, setFault] = useState<string>();
  useLayoutEffect(() => fit(), [fault]);
  function submit(event: FormEvent) {
    event.preventDefault();
    setFault(sign(name));
  }
  return (
    <>
      <h1>Sign the document</h1>
      <form autoComplete="off" onSubmit={submit} onKeyDown={event => event.key === 'Escape' && cancel()}>
        <label htmlFor="name">Name</label>
        <input id="name" required autoFocus aria-describedby="hint" value={name}
            onChange={event => setName(event.target.value)} />
        <p id="hint" role={fault ? 'alert' : 'status'}>{fault ?? 'It becomes part of the signature.'}</p>
        <div className="buttons">
          <button type="button" onClick={cancel}>Cancel</button>
          <button type="submit">Sign</button>
        </div>
      </form>
    </>
  );
}

createRoot(document.querySelector('main')!).render(<Dialog />);
