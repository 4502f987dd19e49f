'use strict';

// The testing kit; testing.d.ts is its manual. Every object that a test gets is created here and so belongs
// to the realm that loaded this file: some test runners give each test file its own realm.

// First, because it says what is wrong where a bundler has put something else in place of `require`.
const addon = require('../js/load_library.js').load('zelk_testing.node');
const { Buffer, constants } = require('buffer');
const { inspect, types } = require('util');

const DEFAULT_TIMEOUT = 25000;
const INT32 = { least: -(2 ** 31), most: 2 ** 31 - 1 };
const SYSTEM_APPLICATION = BigInt(0x100000001);
const OTHER_APPLICATION = BigInt(1);

// The type of each operation's answer, by name.
const OPERATIONS = Object.fromEntries(addon.operations.map(({ name, answer }) => [name, answer]));

function codedError(code, message) {
  const error = new Error(message);
  error.code = code;
  return error;
}

const isObject = (value) => value !== null && typeof value === 'object';

function kindOf(value) {
  if (value === null || value === undefined) {
    return String(value);
  }
  const kind = Array.isArray(value) ? 'array' : typeof value;
  return `${/^[aeiou]/.test(kind) ? 'an' : 'a'} ${kind}`;
}

const isText = (value) => typeof value === 'string' || types.isUint8Array(value);

// A text that no runtime could turn into a string would never reach the caller.
function checkLength(operation, text) {
  const size = typeof text === 'string' ? Buffer.byteLength(text) : text.length;
  if (size > constants.MAX_STRING_LENGTH) {
    throw new RangeError(`the handler of ${operation} must answer texts of at most ` +
      `${constants.MAX_STRING_LENGTH} bytes, not ${size}`);
  }
}

const IS_ANSWER = {
  'a boolean': (value) => typeof value === 'boolean',
  'a string': isText,
  'an array of strings': Array.isArray,
  nothing: () => false,
};

// `value`, which the handler of `operation` returned, in the form in which it is sent; a list is read once.
function checkedAnswer(operation, value) {
  const wanted = OPERATIONS[operation];
  const mistake = (found) => new TypeError(`the handler of ${operation} must answer ${wanted}, not ${found}`);
  if (!IS_ANSWER[wanted](value)) {
    throw mistake(kindOf(value));
  }
  if (isText(value)) {
    checkLength(operation, value);
  }
  if (!Array.isArray(value)) {
    return value;
  }
  const texts = [];
  for (let i = 0; i < value.length; ++i) {
    const text = value[i];
    if (!isText(text)) {
      throw mistake(`${kindOf(text)} as element ${i}`);
    }
    checkLength(operation, text);
    texts.push(text);
  }
  return texts;
}

// Known by this mark rather than by its class: a handler may have got its class from another realm.
const BRAND = Symbol.for('zelklogservice.ServiceError');

function checkCode(code) {
  if (typeof code !== 'number') {
    throw new TypeError(`the code of a ServiceError must be a number, not ${kindOf(code)}`);
  }
  if (!Number.isInteger(code) || code === 0 || code < INT32.least || code > INT32.most) {
    throw new RangeError(`the code of a ServiceError must be an int32 other than 0, not ${code}`);
  }
}

class ServiceError extends Error {
  constructor(code, answer) {
    checkCode(code);
    super(`the log service answers with code ${code}`);
    this.code = code;
    if (answer !== undefined) {
      this.answer = answer;
    }
  }
}
Object.defineProperties(ServiceError.prototype, {
  name: { value: 'ServiceError', writable: true, configurable: true },
  [BRAND]: { value: true },
});

// What a ServiceError asks for, each part read once. Throws whatever else a handler has thrown.
function checkedFailure(thrown) {
  if (!isObject(thrown) || !thrown[BRAND]) {
    throw thrown;
  }
  const { code, answer: value } = thrown;
  checkCode(code);
  return { code, value };
}

function checkOperation(name) {
  if (!Object.prototype.hasOwnProperty.call(OPERATIONS, name)) {
    const known = Object.keys(OPERATIONS).join(', ');
    throw new TypeError(`the log service has no operation ${String(name)}: it has ${known}`);
  }
}

function checkHandler(name, handler) {
  checkOperation(name);
  if (handler !== undefined && typeof handler !== 'function') {
    throw new TypeError(`the handler of ${name} must be a function, not ${kindOf(handler)}`);
  }
}

function checkedHandlers(handlers) {
  if (!isObject(handlers)) {
    throw new TypeError(`the handlers must be an object, not ${kindOf(handlers)}`);
  }
  const checked = new Map();
  // The methods of a class are not among the object's own keys.
  for (const name of new Set([...Object.keys(handlers), ...Object.keys(OPERATIONS)])) {
    const handler = handlers[name];
    checkHandler(name, handler);
    checked.set(name, handler && ((...args) => Reflect.apply(handler, handlers, args)));
  }
  return checked;
}

function checkedTimeout(options) {
  if (!isObject(options)) {
    throw new TypeError(`the options must be an object, not ${kindOf(options)}`);
  }
  const timeout = options.timeout === undefined ? DEFAULT_TIMEOUT : options.timeout;
  if (typeof timeout !== 'number' || !(timeout >= 1 && timeout <= INT32.most)) {
    throw new RangeError(
      `options.timeout is a number of milliseconds from 1 to ${INT32.most}, not ${textOf(timeout)}`);
  }
  return timeout;
}

// What a test throws may itself throw when it is shown.
function textOf(value) {
  try {
    return types.isNativeError(value) ? String(value) : inspect(value);
  } catch {
    return 'something that cannot be shown';
  }
}

const copied = (value) => (Array.isArray(value) ? Array.from(value) : value);

function logService(handlers = {}, options = {}) {
  const handlerOf = checkedHandlers(handlers);
  const timeout = checkedTimeout(options);
  const requests = [];
  const errors = [];
  const unlisted = [];
  let isRestored = false;

  // Keeps a mistake for restore(), even when the test has frozen the list that shows it.
  function report(error) {
    try {
      errors.push(error);
    } catch {
      unlisted.push(error);
    }
  }

  // Ends one call with a code and, unless `value` is undefined, an answer.
  function answer(id, operation, code, value) {
    let sent;
    try {
      sent = value === undefined ? undefined : checkedAnswer(operation, value);
    } catch (error) {
      report(error);
      addon.answer(native, id, addon.codes.wrongTypes);
      return;
    }
    addon.answer(native, id, code, sent);
  }

  // Ends one call whose handler has thrown.
  function fail(id, operation, thrown) {
    let failure;
    try {
      failure = checkedFailure(thrown);
    } catch (error) {
      report(error);
      addon.answer(native, id, addon.codes.errorAnswer);
      return;
    }
    answer(id, operation, failure.code, failure.value);
  }

  function note(operation, args) {
    try {
      requests.push({ operation, args });
    } catch {
      report(new TypeError(`service.requests is frozen: a request for ${operation} is missing there`));
    }
  }

  // Called for each request. A handler gets copies of the lists: it cannot change what is kept.
  function serve(id, operation, ...given) {
    const args = given.map(copied);
    note(operation, args);
    const handler = handlerOf.get(operation);
    if (handler === undefined) {
      addon.passOn(native, id);
      return;
    }
    let value;
    let isLate;
    try {
      value = handler(...args.map(copied));
      isLate = isObject(value) && typeof value.then === 'function';
    } catch (error) {
      fail(id, operation, error);
      return;
    }
    if (isLate) {
      new Promise((resolve) => resolve(value))
        .then((late) => answer(id, operation, 0, late), (error) => fail(id, operation, error));
    } else {
      answer(id, operation, 0, value);
    }
  }

  const native = addon.open(serve, timeout);
  if (native === undefined) {
    throw codedError('ERR_ZELK_SERVICE_IN_USE',
      'a log service of another thread is in force: restore that one first');
  }

  function restore() {
    if (isRestored) {
      return;
    }
    if (!addon.close(native)) {
      throw codedError('ERR_ZELK_RESTORE_ORDER',
        'a later log service is in front of this one: restore that one first');
    }
    isRestored = true;
    const all = [...errors, ...unlisted];
    if (all.length > 0) {
      const texts = all.map(textOf).join('; ');
      throw new AggregateError(all, `handlers of the log service failed: ${texts}`);
    }
  }

  const service = {
    requests,
    errors,
    clear() {
      requests.length = 0;
    },
    handle(name, handler) {
      checkHandler(name, handler);
      handlerOf.set(name, handler);
    },
    leave() {
      addon.setPresent(native, false);
    },
    join() {
      addon.setPresent(native, true);
    },
    restore,
  };
  if (Symbol.dispose) {
    service[Symbol.dispose] = restore;
  }
  return Object.freeze(service);
}

const LEVELS = { 3: 'D', 4: 'I', 5: 'W', 6: 'E', 7: 'F' };

function captureLog() {
  const native = addon.startCapture();
  const lines = [];
  function take() {
    addon.takeLines(native, (level, domain, tag, message) => {
      lines.push({ level: LEVELS[level], domain, tag, message });
    });
  }
  return {
    get lines() {
      take();
      return lines;
    },
    stop() {
      addon.stopCapture(native);
      take();
    },
  };
}

function tokenOf(caller) {
  if (typeof caller === 'bigint') {
    if (caller < 0 || caller !== BigInt.asUintN(64, caller)) {
      throw new RangeError(`a full token id has 64 bits: ${caller} is out of range`);
    }
    return caller;
  }
  if (isObject(caller) && typeof caller.systemApplication === 'boolean') {
    return caller.systemApplication ? SYSTEM_APPLICATION : OTHER_APPLICATION;
  }
  throw new TypeError('a caller must be { systemApplication: boolean }, a full token id as a bigint, or ' +
    `null, not ${textOf(caller)}`);
}

function setCaller(caller) {
  addon.setCaller(caller === null ? undefined : tokenOf(caller));
}

const IS_ARGUMENT = {
  'a boolean': (value) => typeof value === 'boolean',
  'a bigint': (value) => typeof value === 'bigint',
  'a string': (value) => typeof value === 'string',
  'an array of strings': (value) => Array.isArray(value) && value.every((text) => typeof text === 'string'),
};

// The index of the form of `operation` that takes `args`.
function checkedForm(operation, args) {
  checkOperation(operation);
  const forms = addon.operations.filter(({ name }) => name === operation);
  const form = forms.find(({ args: types }) => types.length === args.length);
  if (form === undefined) {
    const counts = forms.map(({ args: types }) => types.length).join(' or ');
    throw new TypeError(`${operation} takes ${counts} arguments, not ${args.length}`);
  }
  form.args.forEach((type, i) => {
    if (!IS_ARGUMENT[type](args[i])) {
      throw new TypeError(`argument ${i + 1} of ${operation} must be ${type}, not ${textOf(args[i])}`);
    }
    if (type === 'a bigint' && args[i] !== BigInt.asIntN(64, args[i])) {
      throw new RangeError(`argument ${i + 1} of ${operation} has 64 bits: ${args[i]} is out of range`);
    }
  });
  return addon.operations.indexOf(form);
}

function whyOf([text, error, received, expected]) {
  return {
    text,
    ...(error && { error }),
    ...(expected && { received, expected }),
  };
}

function request(operation, ...given) {
  const args = given.map(copied);
  const index = checkedForm(operation, args);
  return new Promise((resolve, reject) => {
    addon.request(index, (whyNot, code, answer, ...why) => {
      if (whyNot !== undefined) {
        reject(codedError('ERR_ZELK_NO_SERVICE', whyNot));
      } else {
        resolve({ code, answer: copied(answer), ...(why.length > 0 && { why: whyOf(why) }) });
      }
    }, ...args);
  });
}

module.exports = { logService, ServiceError, captureLog, setCaller, request };
