// Writes api/@ohos.zelklogservice.d.ts, the declaration for a device's SDK, from index.d.ts: the same
// functions and the same manuals, in the platform's form.
//
//   node scripts/sdk_declaration.mjs
import { readFileSync, writeFileSync } from 'node:fs';
import { fileURLToPath } from 'node:url';
import ts from 'typescript';

const SOURCE = fileURLToPath(new URL('../js/index.d.ts', import.meta.url));
export const TARGET = fileURLToPath(new URL('../api/@ohos.zelklogservice.d.ts', import.meta.url));

const TAGS = ['@systemapi', '@since 11']; // Release 4.1, the oldest that has all the module needs.
// A type that the platform itself has, and that index.d.ts declares for Node.js.
const CALLBACK = 'AnswerCallback';

// What only the desktop has.
const isForDevices = (line) => !line.includes('zelklogservice/testing');

const NOTICE = `// Generated from js/index.d.ts by scripts/sdk_declaration.mjs.
`;

// The lines of a JSDoc comment without its frame.
function linesOf(comment) {
  const inside = comment.replace(/^\/\*\*/, '').replace(/\*\/$/, '');
  const lines = inside.split('\n').map((line) => line.replace(/^\s*\* ?/, '').trimEnd());
  return lines.filter(isForDevices).join('\n').trim().split('\n');
}

const asComment = (lines) =>
  ['/**', ...lines.map((line) => ` * ${line}`.trimEnd()), ' */'];

const typeText = (node) => node.getText().replace(/\s+/g, ' ');

// The manual of a function's form: its text, then its parameters and its result with their types.
function functionManual(statement, lines) {
  const firstTag = lines.findIndex((line) => line.startsWith('@'));
  const text = firstTag < 0 ? lines : lines.slice(0, firstTag);
  const tags = (firstTag < 0 ? '' : lines.slice(firstTag).join(' ')).split(/ (?=@)/);
  const parameters = statement.parameters.map(({ name, type }) => {
    const tag = tags.find((one) => one.startsWith(`@param ${name.text} `));
    const description = tag ? ` - ${tag.slice(`@param ${name.text} `.length)}` : '';
    return `@param { ${typeText(type)} } ${name.text}${description}`;
  });
  const throws = tags.filter((tag) => tag.startsWith('@throws'))
    .map((tag) => tag.replace(/^@throws \{(.*?)\}/, '@throws { $1 }'));
  const result = `@returns { ${typeText(statement.type)} }`;
  return [...text.join('\n').trim().split('\n'), '', ...parameters, result, ...throws];
}

function declaration(file, statement) {
  const ranges = ts.getLeadingCommentRanges(file.text, statement.pos);
  const { pos, end } = ranges.at(-1);
  const lines = linesOf(file.text.slice(pos, end));
  const manual = ts.isFunctionDeclaration(statement) ? functionManual(statement, lines) : [...lines, ''];
  const code = statement.getText().replace(/^export /, '');
  return [...asComment([...manual, ...TAGS]), ...code.split('\n')];
}

export function sdkDeclaration() {
  const text = readFileSync(SOURCE, 'utf8');
  const file = ts.createSourceFile(SOURCE, text, ts.ScriptTarget.Latest, true);
  const [intro] = ts.getLeadingCommentRanges(text, 0);
  const manual = linesOf(text.slice(intro.pos, intro.end));
  const namespace = asComment([...manual, '', '@namespace zelklogservice', ...TAGS]);
  const members = file.statements
    .filter((statement) => statement.name.text !== CALLBACK)
    .map((statement) => declaration(file, statement).map((line) => `  ${line}`.trimEnd()).join('\n'));
  const body = members.join('\n\n').replaceAll(CALLBACK, 'Callback');
  return `${NOTICE}import type { Callback } from './@ohos.base';

${namespace.join('\n')}
declare namespace zelklogservice {
${body}
}

export default zelklogservice;
`;
}

if (process.argv[1] === fileURLToPath(import.meta.url)) {
  writeFileSync(TARGET, sdkDeclaration());
}
