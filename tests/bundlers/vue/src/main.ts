import { createApp } from 'vue';
import Dialog from './Dialog.vue';
import './style.css';

createApp(Dialog).mount('main');
