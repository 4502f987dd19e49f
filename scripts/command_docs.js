'use strict';

// Writes the manual page of zelklog and its completion for bash, both generated from the command's own help:
//
//   node scripts/command_docs.js MANUAL_PAGE COMPLETION

const { writeFileSync } = require('node:fs');
const { build } = require('../bin/program.js');
const { ENVIRONMENT, EXAMPLES, ITEMS } = require('../bin/help.js');
const { version } = require('../package.json');

const program = build();
const help = program.createHelp();

// All subcommands of this one, each with the words that select it.
function commandsBelow(command, words = []) {
  const own = command.commands.map((sub) => [sub, [...words, sub.name()]]);
  return own.flatMap(([sub, path]) => [{ command: sub, path }, ...commandsBelow(sub, path)]);
}

// Text for the formatter of manual pages, for which a leading dot and a backslash have a special meaning.
const escaped = (text) => text.replace(/\\/g, '\\e').replace(/-/g, '\\-').replace(/^(?=[.'])/gm, '\\&');

const entry = (term, about) => `.TP\n.B ${escaped(term)}\n${escaped(about)}\n`;
const asItIs = (text) => `.nf\n${escaped(text.replace(/^\n*[A-Z][^\n]*:?\n/, ''))}\n.fi\n`;

function optionEntries(command) {
  const options = command.options.filter(({ hidden }) => !hidden);
  return options.map((option) => entry(option.flags, help.optionDescription(option))).join('');
}

function ownOptions(command) {
  const entries = optionEntries(command);
  return entries && `.RS\n${entries}.RE\n`;
}

function manualPage() {
  const leaves = commandsBelow(program).filter(({ command }) => command.commands.length === 0);
  const [environment, exitStatus] = ENVIRONMENT.split('\n\n');
  return [
    `.TH ZELKLOG 1 "" "zelklogservice ${version}" "User Commands"\n`,
    `.SH NAME\nzelklog \\- control diagnostic logging\n`,
    `.SH SYNOPSIS\n.B zelklog\n[options] command [argument ...]\n`,
    `.SH DESCRIPTION\n${escaped(program.description())}\n`,
    `.SH COMMANDS\n`,
    ...leaves.map(({ command, path }) =>
      entry([...path, command.usage().replace('[options] ', '').replace('[options]', '')].join(' ').trim(),
        command.description()) + ownOptions(command)),
    `.SH OPTIONS\n${optionEntries(program)}`,
    `.SH ITEMS\nItems are typed as NAME key=value ...\n${asItIs(ITEMS)}`,
    `.SH ENVIRONMENT\n${asItIs(environment)}`,
    `.SH EXIT STATUS\n${asItIs(exitStatus)}`,
    `.SH EXAMPLES\n${asItIs(EXAMPLES)}`,
  ].join('');
}

function completion() {
  const longOptions = (command) => command.options.map(({ long }) => long);
  const wordsOf = ({ command, path }) => {
    const options = [...longOptions(command), ...longOptions(program), '--help'];
    const words = new Set([...command.commands.map((sub) => sub.name()), ...options]);
    return `    ['${['zelklog', ...path].join(' ')}']='${[...words].join(' ')}'\n`;
  };
  const table = [{ command: program, path: [] }, ...commandsBelow(program)].map(wordsOf).join('');
  return `# Completion of zelklog for bash.
declare -gA _zelklog_words=(
${table})

_zelklog() {
    local path=zelklog index
    for ((index = 1; index < COMP_CWORD; ++index)); do
        [ -z "\${_zelklog_words["$path \${COMP_WORDS[index]}"]:-}" ] || path+=" \${COMP_WORDS[index]}"
    done
    mapfile -t COMPREPLY < <(compgen -W "\${_zelklog_words[$path]}" -- "\${COMP_WORDS[COMP_CWORD]}")
}
complete -F _zelklog zelklog
`;
}

const [manualFile, completionFile] = process.argv.slice(2);
writeFileSync(manualFile, manualPage());
writeFileSync(completionFile, completion());
