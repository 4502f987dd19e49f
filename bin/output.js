'use strict';

// What goes to the terminal. Texts of the log service may come from another user, so control characters,
// which a terminal would obey, and those that change the direction of writing are shown as \u001b and the
// like.

const CONTROL = /[\p{Cc}\p{Bidi_Control}]/gu;
const CONTROL_BUT_LINE_FEED = /(?!\n)[\p{Cc}\p{Bidi_Control}]/gu;

const escape = (character) => `\\u${character.charCodeAt(0).toString(16).padStart(4, '0')}`;

// A text as it may be shown; its lines stay lines.
const visible = (text) => text.replace(CONTROL_BUT_LINE_FEED, escape);

// A name or another text that belongs on one line. JSON stays the same JSON.
const visibleInLine = (text) => text.replace(CONTROL, escape);

const EXIT_FAILED = 1;

// `text` has been made visible before; it may hold colours.
function print(text) {
  process.stdout.write(`${text}\n`);
}

function complain(text) {
  process.stderr.write(`${visible(text)}\n`);
}

// Without this, an error of standard output would end the program with an exception or go unnoticed.
function watchOutput() {
  process.stdout.on('error', (error) => {
    process.exitCode = EXIT_FAILED;
    // A reader that has seen enough is no news.
    if (error.code !== 'EPIPE') {
      complain(`zelklog: cannot write to standard output: ${error.message}`);
    }
  });
  // Nobody is left to be told.
  process.stderr.on('error', () => {});
}

module.exports = { EXIT_FAILED, visible, visibleInLine, print, complain, watchOutput };
