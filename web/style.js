// The elements' look, in a style sheet of their own: pages that allow no inline style take it.

export const sheet = new CSSStyleSheet();
sheet.replaceSync(`
:host { display: inline-block; position: relative; overflow: hidden; font: 11px/1.2 Arial, sans-serif;
  color: #1a1a1a; background: #f0f0f0; contain: layout paint; width: 401px; height: 260px; }
:host(user-control-1) { width: 353px; height: 396px; }
:host([hidden]) { display: none; }
[hidden] { display: none !important; }
.inside { position: absolute; inset: 0; overflow: hidden; transition: filter .2s, opacity .2s; }
.inside.away { filter: grayscale(1) brightness(.55); }
.inside .inside { position: relative; }
.inside > *, .frame > *, .viewer > *, .picture > :not(canvas) { position: absolute; box-sizing: border-box; margin: 0; }
.viewer { overflow: hidden; background: #000; }
.picture { overflow: hidden; }
.picture > canvas { display: block; width: 100%; height: 100%; }
.label { overflow: hidden; white-space: nowrap; text-overflow: ellipsis; }
.button { font: inherit; padding: 0; border: 1px solid #adadad; border-radius: 3px; background: #fdfdfd; color: inherit;
  cursor: pointer; display: flex; align-items: center; justify-content: center; }
.button > canvas { max-width: 80%; max-height: 80%; }
.button:not(.drawn) > canvas { display: none; }
.button:hover:enabled { background: #e5f1fb; border-color: #0078d4; }
.button:active:enabled { background: #cce4f7; }
.button:disabled { opacity: .45; cursor: default; }
.list, .text { font: inherit; border: 1px solid #adadad; border-radius: 2px; background: #fff; color: inherit; padding: 0 3px; }
.text { text-align: center; padding: 0; }
select.list:not([size]) { appearance: none; padding-right: 12px; text-overflow: ellipsis;
  background: linear-gradient(45deg, transparent 50%, #555 50%) calc(100% - 6px) 55% / 4px 4px no-repeat,
    linear-gradient(-45deg, transparent 50%, #555 50%) calc(100% - 2px) 55% / 4px 4px no-repeat, #fff; }
textarea.text { text-align: left; padding: 4px; resize: none; white-space: pre; }
:is(button, select, input, textarea, [tabindex]):focus-visible { outline: 2px solid #0067c0; outline-offset: 1px; }
.notice { position: absolute; left: 50%; top: 50%; transform: translate(-50%, -50%); max-width: 90%; padding: 8px 14px;
  border-radius: 6px; background: rgba(20, 20, 20, .85); color: #fff; font-size: 13px; text-align: center; z-index: 2000; }
dialog { border: 1px solid #888; border-radius: 8px; padding: 0; font: 13px/1.3 Arial, sans-serif; color: #1a1a1a;
  background: #f6f6f6; box-shadow: 0 12px 40px rgba(0, 0, 0, .35); }
dialog::backdrop { background: rgba(0, 0, 0, .35); }
dialog header { display: flex; align-items: center; justify-content: space-between; padding: 6px 8px 6px 12px; }
dialog h2 { font-size: 13px; margin: 0; font-weight: 600; }
dialog .close { border: 0; background: none; font-size: 13px; padding: 3px 7px; border-radius: 4px; cursor: pointer; }
dialog .close:hover { background: #e81123; color: #fff; }
.window > .inside { position: relative; inset: auto; font-size: 11px; }
.window.full { width: 100vw; height: 100vh; max-width: none; max-height: none; border: 0; border-radius: 0; background: #000; }
.window.full header { display: none; }
.window.full > .inside, .window.full > .inside > .viewer { width: 100% !important; height: 100% !important; }
.question form { display: flex; flex-direction: column; gap: 12px; padding: 16px; min-width: 260px; max-width: 420px; }
.question p { margin: 0; white-space: pre-line; overflow-wrap: anywhere; }
.question label { display: flex; flex-direction: column; gap: 6px; }
.question input, .question select { font: inherit; padding: 5px 7px; border: 1px solid #999; border-radius: 4px; }
.question .row { display: flex; gap: 8px; justify-content: flex-end; }
.question .row button { font: inherit; padding: 5px 16px; border: 1px solid #999; border-radius: 4px; background: #fff; }
.question .row button:first-child { background: #0067c0; border-color: #0067c0; color: #fff; }
.menu { position: fixed; inset: auto; margin: 0; padding: 4px; border: 1px solid #aaa; border-radius: 6px; background: #fff;
  box-shadow: 0 6px 20px rgba(0, 0, 0, .25); font: 12px Arial, sans-serif; z-index: 3000; }
.menu button { display: block; width: 100%; border: 0; background: none; text-align: left; padding: 5px 14px 5px 24px;
  border-radius: 4px; font: inherit; position: relative; }
.menu button:hover, .menu button:focus { background: #e5f1fb; }
.menu button[aria-checked="true"]::before { content: "✓"; position: absolute; left: 8px; }
.menu hr { border: 0; border-top: 1px solid #ddd; margin: 4px 0; }
`);
