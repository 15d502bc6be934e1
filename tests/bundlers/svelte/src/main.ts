import { mount } from 'svelte';
import Dialog from './Dialog.svelte';
import './style.css';

mount(Dialog, { target: document.querySelector('main')! });
