'use strict';

// Asks a log service method by method, and says of each whether it is right: `zelklog check`.

const { load } = require('../js/load_library.js');
const { painterFor } = require('./answers.js');
const { KIT, leave, prepare } = require('./call.js');
const { faultOf, shown, wrong } = require('./faults.js');
const { EXIT_FAILED, complain, print, short, visibleInLine } = require('./output.js');

// Each call that is never answered keeps a worker thread, so there are more of them than methods.
const WORKER_THREADS = 64;
const MOST_SECONDS = 25;
const PROGRESS_AFTER_MS = 1000;

const LATE = 'ERR_ZELKLOG_LATE';
const NO_SERVICE = 'ERR_ZELK_NO_SERVICE';
const CODE_GONE = 1001;
const GONE = { ...wrong('the service is gone', 'an answer'), code: CODE_GONE };

// The arguments of the queries.
const QUERIES = {
  GetModemLogConfig: ({ key }) => [[key]],
  GetModemLogDirectPackConfig: () => [],
  GetModemLogLogMasks: () => [],
  GetModemLogStatus: () => [],
  GetTcpdumpStatus: () => [],
  GetTcpdumpConfig: ({ key }) => [[key]],
  FetchRemoteDevicesLogs: ({ request }) => [request, BigInt(0)],
  QueryRemoteDevicesLogs: ({ request }) => [request],
  GetRemoteDevicesList: () => [],
  QueryProtocolData: ({ request }) => [request],
};

const MODEM = {
  status: 'GetModemLogStatus', config: 'GetModemLogConfig', plainSwitch: 'HandleModemLogSwitch',
};
const TCPDUMP = {
  status: 'GetTcpdumpStatus', config: 'GetTcpdumpConfig', plainSwitch: 'HandleTcpdumpSwitch',
};
const NO_LOG = {};

// How the other methods are tried, and on which log.
const CHANGES = {
  HandleModemLogSwitch: ['trySwitch', MODEM],
  HandleModemLogSwitchWithConfigs: ['trySwitchWithItems', MODEM],
  SendModemLogCommand: ['tryCommand', MODEM],
  ChangeModemLogConfig: ['tryChange', MODEM],
  ChangeTcpdumpConfig: ['tryChange', TCPDUMP],
  HandleTcpdumpSwitch: ['trySwitch', TCPDUMP],
  HandleTcpdumpSwitchWithConfigs: ['trySwitchWithItems', TCPDUMP],
  HandleBluetoothCallPcmLogSwitch: ['trySwitch', NO_LOG],
};

// An item that no earlier check has sent, as the module writes items.
let number = Date.now() % 1e9;
function newItem(key) {
  const scalars = { number: ++number, flag: true, text: 'zelklog' };
  return { scalars, text: `{"configKey":"${key}","value":${JSON.stringify(scalars)}}` };
}

class ServiceGone extends Error {}

class Check {
  #operations;
  #results;
  #request;
  #options;
  #milliseconds;
  #waiting = 0;
  #wasOn = {}; // What each status query answered first.
  #effects = []; // What queries answered after changes: { query, method, isShown, received, expected }.

  // `request` makes a request of the log service.
  constructor(operations, request, options) {
    this.#operations = new Map(operations.map((operation) => [operation.method, operation]));
    this.#results = new Map(operations.map(({ method }) => [method, { method, verdict: 'skipped' }]));
    this.#request = request;
    this.#options = options;
    this.#milliseconds = Math.min(options.timeout, MOST_SECONDS) * 1000;
  }

  // Whether a call has not ended yet.
  get isWaiting() {
    return this.#waiting > 0;
  }

  get results() {
    return [...this.#results.values()];
  }

  // Rejected when `promise` takes longer than the time limit.
  async within(promise, what) {
    ++this.#waiting;
    const ended = promise.finally(() => --this.#waiting);
    const progress = setTimeout(() => {
      if (process.stderr.isTTY) {
        complain(`zelklog: waiting for ${what} …`);
      }
    }, PROGRESS_AFTER_MS);
    let limit;
    const late = new Promise((resolve, reject) => {
      const error = new Error(`no answer within ${this.#milliseconds / 1000} s`);
      limit = setTimeout(() => reject(Object.assign(error, { code: LATE })), this.#milliseconds);
    });
    try {
      return await Promise.race([ended, late]);
    } finally {
      clearTimeout(progress);
      clearTimeout(limit);
    }
  }

  // Tries all methods in the order of the interface, in which the queries of a log precede its changes.
  async run() {
    const methods = [...this.#operations.keys()]
      .filter((method) => this.#options.changes || method in QUERIES);
    for (const [index, method] of methods.entries()) {
      try {
        await this.#try(method);
      } catch (error) {
        if (!(error instanceof ServiceGone)) {
          throw error;
        }
        methods.slice(index).forEach((each) => this.#judge(each, GONE));
        break;
      }
    }
    this.#judgeEffects();
  }

  async #try(method) {
    if (method in QUERIES) {
      this.#wasOn[method] = await this.#query(method) === true;
      return;
    }
    const [how, log] = CHANGES[method];
    await this[how](method, log);
  }

  #judge(method, fault) {
    Object.assign(this.#results.get(method), fault);
  }

  // Makes a request and gives its answer, true where there is none; undefined when something is wrong.
  // Where something was wrong with the method before, it is not asked again.
  async #ask(method, ...args) {
    const result = this.#results.get(method);
    if (result.verdict === 'wrong' || result.verdict === 'missing') {
      return undefined;
    }
    const operation = this.#operations.get(method);
    const start = performance.now();
    const { late, code, answer, why } = await this.#outcome(operation, args);
    if (why && code === CODE_GONE) {
      throw new ServiceGone();
    }
    const fault = late ?? faultOf(operation, { code, answer, why });
    const received = operation.answer === 'nothing' ? `code ${code}` : shown(answer);
    const milliseconds = Math.max(result.milliseconds ?? 0, Math.round(performance.now() - start));
    this.#judge(method, { verdict: 'ok', received, ...fault, code, milliseconds });
    return fault ? undefined : answer ?? true;
  }

  async #outcome({ method, name }, args) {
    try {
      return await this.within(this.#request(name, ...args), method);
    } catch (error) {
      if (error.code === NO_SERVICE) {
        throw new ServiceGone();
      }
      if (error.code === LATE) {
        return { late: wrong(error.message, 'an answer') };
      }
      throw error;
    }
  }

  #query(method) {
    return this.#ask(method, ...QUERIES[method](this.#options));
  }

  #newItem() {
    return newItem(this.#options.key);
  }

  async trySwitch(method, log) {
    for (const isOn of [true, false]) {
      if (await this.#ask(method, isOn)) {
        await this.#seeStatus(log, method, isOn);
      }
    }
  }

  async trySwitchWithItems(method, log) {
    for (const isOn of [true, false]) {
      const item = this.#newItem();
      if (await this.#ask(method, isOn, [item.text])) {
        await this.#seeStatus(log, method, isOn);
        await this.#seeItem(log, method, item);
      }
    }
    // This is the last switch of its log.
    const wasOn = this.#wasOn[log.status];
    if (!await this.#ask(log.plainSwitch, wasOn)) {
      await this.#ask(method, wasOn, [this.#newItem().text]);
    }
  }

  tryCommand(method) {
    return this.#ask(method, this.#newItem().text);
  }

  async tryChange(method, log) {
    const item = this.#newItem();
    if (await this.#ask(method, [item.text])) {
      await this.#seeItem(log, method, item);
    }
  }

  async #seeStatus({ status }, method, isOn) {
    const answer = status && await this.#query(status);
    if (answer !== undefined) {
      this.#effects.push(
        { query: status, method, isShown: answer === isOn, received: shown(answer), expected: shown(isOn) });
    }
  }

  async #seeItem({ config }, method, { scalars, text }) {
    const texts = await this.#query(config);
    if (texts !== undefined) {
      const stored = JSON.parse(JSON.parse(texts[0]).value);
      const isShown = Object.entries(scalars).every(([name, scalar]) => stored[name] === scalar);
      this.#effects.push({ query: config, method, isShown, received: texts[0], expected: text });
    }
  }

  // Where no change shows in a query, the query is wrong; where one does not, the change.
  #judgeEffects() {
    for (const query of new Set(this.#effects.map((effect) => effect.query))) {
      const effects = this.#effects.filter((effect) => effect.query === query);
      const hidden = effects.filter(({ isShown }) => !isShown);
      const isHidden = (method) => hidden.some((effect) => effect.method === method);
      if (effects.every(({ method }) => isHidden(method))) {
        const { method, received, expected } = hidden[0];
        this.#judgeIfOk(query, wrong(`after ${method}: ${received}`, expected));
      } else {
        hidden.forEach(({ method, received, expected }) =>
          this.#judgeIfOk(method, wrong(`${query} then answers ${received}`, expected)));
      }
    }
  }

  #judgeIfOk(method, fault) {
    if (this.#results.get(method).verdict === 'ok') {
      this.#judge(method, fault);
    }
  }
}

// Rejected when there is no log service.
const findService = (kit) => new Promise((resolve, reject) => {
  kit.request(undefined, (whyNot) => (whyNot === undefined ? resolve() : reject(new Error(whyNot))));
});

// A result with its texts as they are shown.
function legible({ method, verdict, received, expected, code, milliseconds }) {
  const text = (value) => (value === undefined ? undefined : short(value));
  return { method, verdict, received: text(received), expected: text(expected), code, milliseconds };
}

const COLOURS = { ok: 'good', missing: 'strong', wrong: 'strong', skipped: 'weak' };

function line({ method, verdict, received = '', expected }, painter) {
  const end = expected === undefined ? received : `${received}; expected ${expected}`;
  return `${painter[COLOURS[verdict]](verdict.padEnd(7))}  ${`${method.padEnd(31)}  ${end}`.trimEnd()}`;
}

function report(results, json) {
  if (json) {
    print(visibleInLine(JSON.stringify(results)));
    return;
  }
  const painter = painterFor(process.stdout);
  results.forEach((result) => print(line(result, painter)));
}

function finish(results, isWaiting, json) {
  const isClean = results.length > 0 && results.every(({ verdict }) => ['ok', 'skipped'].includes(verdict));
  process.exitCode = isClean ? 0 : EXIT_FAILED;
  if (results.length > 0 || json) {
    report(results, json);
  }
  if (isWaiting) {
    process.stdout.write('', () => leave(process.exitCode));
  }
}

// Checks the log service, prints what it found, and sets the exit status. Ends the process where a call that
// was never answered would keep it.
async function check(options) {
  process.env.UV_THREADPOOL_SIZE = String(WORKER_THREADS); // Before the first thread is made.
  const takeLines = prepare(options);
  const kit = load(KIT);
  const { request } = require('../testing/testing.js');
  const checked = new Check(kit.operations, request, options);
  try {
    await checked.within(findService(kit), 'the log service');
  } catch (error) {
    complain(`zelklog: no log service was reached (ZELK_LOG_SERVICE): ${error.message}`);
    finish([], checked.isWaiting, options.json);
    return;
  }
  await checked.run();
  takeLines();
  finish(checked.results.map(legible), checked.isWaiting, options.json);
}

module.exports = { check };
