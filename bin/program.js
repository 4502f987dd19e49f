'use strict';

const { Command, InvalidArgumentError, Option } = require('commander');
const answers = require('./answers.js');
const { call, leave } = require('./call.js');
const { InputError, checkText, parseItem } = require('./items.js');
const { EXIT_FAILED, complain, print, visible, watchOutput } = require('./output.js');
const { version } = require('../package.json');

const EXIT_USAGE = 2;
const EXIT_NO_ANSWER = 124;

// A call ends by itself after 25 s at the latest.
const DEFAULT_SECONDS = 30;
const MOST_SECONDS = 86400;

// The likely cause when the module does not report one: in words, and with what may be said of an answer.
function causeOf({ reached, why }, ofAnswer) {
  if (!reached) {
    return 'no log service was reached (ZELK_LOG_SERVICE)';
  }
  return why ?? `the log service reported an error${ofAnswer}`;
}

function failureOf(name, outcome, seconds) {
  const { kind, value } = outcome;
  switch (kind) {
    case 'rejected':
      return `${name} failed: ${causeOf(outcome, `; its answer was ${JSON.stringify(value)}`)}`;
    case 'refused':
      return `${name} was refused: this process is not a system application (OHOS_FULL_TOKEN_ID)`;
    case 'threw':
      return `${name} threw an error: ${value}`;
    case 'silent':
      return `${name} gave no answer: ${causeOf(outcome, ' or had nothing to answer')}`;
    default:
      return `${name} gave no answer within ${seconds} s (--timeout)`;
  }
}

function exitStatusOf(kind) {
  return kind === 'silent' || kind === 'late' ? EXIT_NO_ANSWER : EXIT_FAILED;
}

function fail(message, exitStatus) {
  complain(`zelklog: ${message}`);
  process.exitCode = exitStatus;
}

const isEmbedded = () => ['', 'embedded'].includes(process.env.ZELK_LOG_SERVICE ?? '');

function noteAbout({ name, unsupported, changes }) {
  if (unsupported) {
    return `${name} is marked as not supported at present; the log service answered`;
  }
  if (changes && isEmbedded()) {
    return 'this was for the embedded log service, which ends with this command; ' +
      'ZELK_LOG_SERVICE=session or system reaches one that stays';
  }
  return undefined;
}

// Makes the call and prints its answer with `show`.
async function answer(command, request, show) {
  const { json, timeout, verbose } = command.optsWithGlobals();
  const outcome = await call(request, { seconds: timeout, verbose });
  if (outcome.kind === 'unloadable') {
    complain(outcome.value);
    process.exitCode = EXIT_FAILED;
    return;
  }
  if (outcome.kind !== 'answered') {
    fail(failureOf(request.name, outcome, timeout), exitStatusOf(outcome.kind));
    if (outcome.kind === 'late') {
      leave(process.exitCode);
    }
    return;
  }
  const note = noteAbout(request);
  if (note) {
    complain(`zelklog: note: ${note}`);
  }
  print(json ? answers.json(outcome.value) : show(outcome.value, answers.painterFor(process.stdout)));
}

function parseSeconds(text) {
  const seconds = Number(text);
  if (!(seconds > 0 && seconds <= MOST_SECONDS)) {
    throw new InvalidArgumentError(`Not a number of seconds up to ${MOST_SECONDS}.`);
  }
  return seconds;
}

function parseWholeNumber(text) {
  const number = Number(text);
  if (!/^-?\d+$/.test(text)) {
    throw new InvalidArgumentError('Not a whole number.');
  }
  if (!Number.isSafeInteger(number)) {
    const most = Number.MAX_SAFE_INTEGER;
    throw new InvalidArgumentError(`Too large: whole numbers go from -${most} to ${most}.`);
  }
  return number;
}

// Each --item takes words up to the next option. The first one is marked here, because the parser does not
// report where one occurrence ends and the next begins; no word on a command line can contain a NUL.
const ITEM_MARK = '\0';

function markItems(words) {
  return words.flatMap((word, index) => {
    if (word.startsWith('--item=')) {
      return ['--item', ITEM_MARK + word.slice('--item='.length)];
    }
    return words[index - 1] === '--item' ? ITEM_MARK + word : word;
  });
}

function collectItems(word, items = []) {
  if (word.startsWith(ITEM_MARK)) {
    items.push([word.slice(ITEM_MARK.length)]);
  } else {
    items.at(-1).push(word);
  }
  return items;
}

// Loaded only where it is needed, so that commands start quickly.
const help = () => require('./help.js');
const itemsHelp = () => help().ITEMS;

function addItemOption(command) {
  const about = 'a configuration item; may be given more than once';
  return command.addOption(new Option('--item <NAME key=value...>', about).argParser(collectItems))
    .addHelpText('after', itemsHelp);
}

function addStatus(group, about, name) {
  group.command('status').description(about)
    .action((options, command) => answer(command, { name, args: [] }, answers.status));
}

function addSwitch(group, what, name) {
  for (const word of ['on', 'off']) {
    addItemOption(group.command(word)).description(`switch ${what} ${word}`)
      .action((options, command) => {
        const items = (options.item ?? []).map(parseItem);
        const args = items.length > 0 ? [word === 'on', items] : [word === 'on'];
        return answer(command, { name, args, changes: true }, answers.verdict);
      });
  }
}

function addConfig(group, what, queryName, changeName) {
  const config = group.command('config').description(`read or change the configuration of ${what}`);
  config.command('get').description('show the settings of the given keys').argument('<KEY...>')
    .action((keys, options, command) => {
      keys.forEach((key) => checkText(key, 'a key'));
      return answer(command, { name: queryName, args: [keys] }, answers.configs);
    });
  addItemOption(config.command('set')).description('change items')
    .argument('[NAME]').argument('[key=value...]')
    .action((name, parameters, options, command) => {
      const items = (name === undefined ? [] : [[name, ...parameters]]).concat(options.item ?? []);
      if (items.length === 0) {
        command.error('error: give at least one item: NAME key=value …, or --item');
      }
      const request = { name: changeName, args: [items.map(parseItem)], changes: true };
      return answer(command, request, answers.verdict);
    });
}

function addModem(program) {
  const modem = program.command('modem').description('the modem log');
  addStatus(modem, 'show whether the modem log is on', 'getModemLogStatus');
  addSwitch(modem, 'the modem log', 'handleModemLogSwitch');
  addConfig(modem, 'the modem log', 'getModemLogConfig', 'changeModemLogConfig');
  modem.command('masks').description('show the log masks')
    .action((options, command) =>
      answer(command, { name: 'getModemLogLogMasks', args: [], unsupported: true }, answers.masks));
  modem.command('direct-pack').description('show the direct-pack configuration')
    .action((options, command) =>
      answer(command, { name: 'getModemLogDirectPackConfig', args: [], unsupported: true }, answers.text));
  modem.command('command').description('send a command').argument('<NAME>').argument('[key=value...]')
    .addHelpText('after', itemsHelp)
    .action((name, parameters, options, command) => {
      const args = [parseItem([name, ...parameters])];
      return answer(command, { name: 'sendModemLogCommand', args, changes: true }, answers.verdict);
    });
}

function addTcpdump(program) {
  const tcpdump = program.command('tcpdump').description('network packet capture');
  addStatus(tcpdump, 'show whether capture is running', 'getTcpdumpStatus');
  addSwitch(tcpdump, 'capture', 'handleTcpdumpSwitch');
  addConfig(tcpdump, 'capture', 'getTcpdumpConfig', 'changeTcpdumpConfig');
}

function addBluetooth(program) {
  const bluetooth = program.command('bluetooth-pcm').description('the audio log of Bluetooth calls');
  for (const word of ['on', 'off']) {
    bluetooth.command(word).description(`switch the log ${word}`)
      .action((options, command) => {
        const request = { name: 'handleBluetoothCallPcmLogSwitch', args: [word === 'on'], changes: true };
        return answer(command, request, answers.done);
      });
  }
}

function addRequest(group, word, about, name) {
  group.command(word).description(about).argument('<REQUEST>')
    .action((request, options, command) =>
      answer(command, { name, args: [checkText(request, 'the request')] }, answers.text));
}

function addRemote(program) {
  const remote = program.command('remote').description('logs of remote devices');
  remote.command('list').description('list the remote devices')
    .action((options, command) => answer(command, { name: 'getRemoteDevicesList', args: [] }, answers.text));
  remote.command('fetch').description('fetch logs from remote devices').argument('<REQUEST>')
    .argument('<NUMBER>', 'a whole number; a negative one after --', parseWholeNumber)
    .action((request, number, options, command) => {
      const args = [checkText(request, 'the request'), number];
      return answer(command, { name: 'fetchRemoteDevicesLogs', args }, answers.text);
    });
  addRequest(remote, 'query', 'query logs of remote devices', 'queryRemoteDevicesLogs');
}

function addCheck(program) {
  program.command('check').description('check a log service: ask it method by method, and say what is wrong')
    .option('--changes', 'also switch each log on and off, and change an item of each configuration')
    .option('--key <KEY>', 'the key to ask for and to change', 'zelklog-check')
    .option('--request <TEXT>', 'the request to the remote devices', '{}')
    .action((options, command) => require('./check.js').check(command.optsWithGlobals()));
}

// The whole command line, for `run` and for the manual page.
function build() {
  const program = new Command('zelklog')
    .description('Controls diagnostic logging: modem log, network capture, Bluetooth call audio, remote ' +
      'devices.')
    .version(version)
    .option('--json', 'print the answer as one line of JSON')
    .option('--timeout <SECONDS>', 'wait no longer than this for the answer', parseSeconds, DEFAULT_SECONDS)
    .option('--verbose', 'show the log lines of the call on standard error')
    .addHelpText('after', () => `${help().ITEMS}\n${help().EXAMPLES}`)
    .addHelpText('afterAll', ({ command }) =>
      (command === program ? '' : help().globalOptions(program)) + help().ENVIRONMENT)
    .configureOutput({
      writeOut: (text) => process.stdout.write(visible(text)),
      writeErr: (text) => process.stderr.write(visible(text)),
    })
    .allowExcessArguments(false) // Older versions of commander allow them.
    .exitOverride();
  addModem(program);
  addTcpdump(program);
  addBluetooth(program);
  addRemote(program);
  addRequest(program, 'protocol', 'send a protocol data request', 'queryProtocolData');
  addCheck(program);
  return program;
}

async function run() {
  watchOutput();
  try {
    await build().parseAsync(markItems(process.argv.slice(2)), { from: 'user' });
  } catch (error) {
    if (error instanceof InputError) {
      fail(error.message, EXIT_USAGE);
    } else if (error.code?.startsWith('commander.')) {
      process.exitCode ??= error.exitCode === 0 ? 0 : EXIT_USAGE;
    } else {
      throw error;
    }
  }
}

module.exports = { build, run };
