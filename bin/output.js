'use strict';

// Output to the terminal. Texts of the log service may come from another user, so control characters, which a
// terminal would obey, and characters that change the direction of writing are shown in the form \u001b.

const CONTROL = /[\p{Cc}\p{Bidi_Control}]/gu;
const CONTROL_BUT_LINE_FEED = /(?!\n)[\p{Cc}\p{Bidi_Control}]/gu;

const escape = (character) => `\\u${character.charCodeAt(0).toString(16).padStart(4, '0')}`;

// A text that is safe to show; its line feeds stay.
const visible = (text) => text.replace(CONTROL_BUT_LINE_FEED, escape);

// The same for a name or another text that belongs on one line. JSON stays the same JSON.
const visibleInLine = (text) => text.replace(CONTROL, escape);

const MOST_CHARACTERS = 200;

// The same, and no longer than fits a line.
function short(text) {
  let shown = '';
  for (const character of text) {
    const next = visibleInLine(character);
    if (shown.length + next.length > MOST_CHARACTERS - 1) {
      return `${shown}…`;
    }
    shown += next;
  }
  return shown;
}

const EXIT_FAILED = 1;

// `text` has already been made visible; it may contain colours.
function print(text) {
  process.stdout.write(`${text}\n`);
}

function complain(text) {
  process.stderr.write(`${visible(text)}\n`);
}

// Without this, an error on standard output would end the program with an exception or go unnoticed.
function watchOutput() {
  process.stdout.on('error', (error) => {
    process.exitCode = EXIT_FAILED;
    // A reader that stopped early is not worth a message.
    if (error.code !== 'EPIPE') {
      complain(`zelklog: cannot write to standard output: ${error.message}`);
    }
  });
  // There is nowhere left to report it.
  process.stderr.on('error', () => {});
}

module.exports = { EXIT_FAILED, visible, visibleInLine, short, print, complain, watchOutput };
