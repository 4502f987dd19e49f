/**
 * For testing applications that use zelklogservice: a log service written in JavaScript, in the same process as the
 * real module; the module's log lines; and the identity of the process.
 *
 * Loading this changes nothing. It is not part of the module and does not exist on a device.
 */

/**
 * An answer text. A string is sent as UTF-8, a `Uint8Array` byte for byte, so that broken text can be tried. It has at
 * most `buffer.constants.MAX_STRING_LENGTH` bytes; a longer one counts as an answer of the wrong type.
 */
export type AnswerText = string | Uint8Array;

/** What a handler returns: the answer or a promise of it. `undefined` is code 0 without an answer. */
export type Answer<T> = T | undefined | void | PromiseLike<T | undefined | void>;

/**
 * The operations of the log service. A handler gets the arguments of the request: booleans, texts, and arrays of the
 * texts of items and keys. It runs on the JavaScript thread that called {@link logService}.
 *
 * Its result is the answer, with code 0. If it throws, the call fails with:
 *
 * - for a {@link ServiceError}, its code, and its answer if it has one;
 * - for anything else, code 1003.
 *
 * An answer of the wrong type fails with code 1004. The last two are mistakes of the test: they are kept in
 * {@link LogService.errors} and thrown by {@link LogService.restore}.
 *
 * Without a handler, a reference service answers. Each {@link logService} has its own, which starts from its initial
 * state.
 */
export interface Handlers {
  /** @param keys The requested keys. Answer: one text per item, `{"configKey":"KEY","value":"TEXT"}`. */
  GetModemLogConfig?: (keys: string[]) => Answer<readonly AnswerText[]>;
  GetModemLogDirectPackConfig?: () => Answer<AnswerText>;
  /** Answer: one text per mask, `{"configKey":"KEY","value":"TEXT"}`. */
  GetModemLogLogMasks?: () => Answer<readonly AnswerText[]>;
  GetModemLogStatus?: () => Answer<boolean>;
  /** @param configs The items' texts, `{"configKey":"KEY","value":VALUE}`. Missing for a switch without items. */
  HandleModemLogSwitch?: (on: boolean, configs?: string[]) => Answer<boolean>;
  /** @param command The text of an item. */
  SendModemLogCommand?: (command: string) => Answer<boolean>;
  ChangeModemLogConfig?: (configs: string[]) => Answer<boolean>;
  GetTcpdumpStatus?: () => Answer<boolean>;
  GetTcpdumpConfig?: (keys: string[]) => Answer<readonly AnswerText[]>;
  ChangeTcpdumpConfig?: (configs: string[]) => Answer<boolean>;
  HandleTcpdumpSwitch?: (on: boolean, configs?: string[]) => Answer<boolean>;
  /** The service answers only its code. */
  HandleBluetoothCallPcmLogSwitch?: (on: boolean) => Answer<never>;
  FetchRemoteDevicesLogs?: (request: string, value: bigint) => Answer<AnswerText>;
  QueryRemoteDevicesLogs?: (request: string) => Answer<AnswerText>;
  GetRemoteDevicesList?: () => Answer<AnswerText>;
  QueryProtocolData?: (request: string) => Answer<AnswerText>;
}

export interface LogServiceOptions {
  /**
   * How long a call waits for its handler, in milliseconds, 1 to 2147483647. After that the call ends with code 1002,
   * like one that the service did not answer in time. 25000 by default.
   */
  timeout?: number;
}

/** One request that arrived. */
export interface ServiceRequest {
  operation: keyof Handlers;
  args: (boolean | string | bigint | string[])[];
}

/** A log service that a test uses in place of the process's own. */
export interface LogService {
  /**
   * The requests in the order of their arrival, including those without a handler. `requests.length = 0` empties it. A
   * request that finds it frozen is answered like any other, and is missing there; {@link restore} says so.
   */
  readonly requests: ServiceRequest[];
  /** The mistakes of handlers: thrown values that are not a {@link ServiceError}, and answers of the wrong type. */
  readonly errors: unknown[];
  /** Empties {@link requests}. */
  clear(): void;
  /**
   * Sets one handler, or removes it.
   *
   * @throws {TypeError} The service has no operation of this name, or the handler is not a function.
   */
  handle<Name extends keyof Handlers>(name: Name, handler: Handlers[Name] | undefined): void;
  /** From now on there is no service: calls do not reach it. Calls that wait for a handler go on. */
  leave(): void;
  /** The service is back. */
  join(): void;
  /**
   * Removes this service and restores the one before it. Calls that wait for a handler end within 100 ms with code
   * 1001, as when the service is gone; calls that no worker thread has begun yet go to the restored service. Calling it
   * again does nothing. `using` does the same at the end of its block.
   *
   * @throws {AggregateError} With {@link errors}, when there are any. The service is removed nevertheless.
   * @throws {Error} `ERR_ZELK_RESTORE_ORDER`: a later service is in front of this one. Nothing is restored.
   */
  restore(): void;
  /** {@link restore}, where the runtime has `Symbol.dispose`. */
  [Symbol.dispose](): void;
}

declare global {
  interface SymbolConstructor {
    readonly dispose: unique symbol;
  }
}

/**
 * Replaces the process's log service until {@link LogService.restore}. Calls from all threads reach it. A second
 * service in the same thread is in front of the first until it is restored.
 *
 * A call that waits for its handler holds one of the runtime's worker threads: four, unless `UV_THREADPOOL_SIZE` says
 * otherwise. A handler that itself needs such a thread, for example to read a file, while all of them wait for
 * handlers, waits until its time limit. A handler that never answers holds its call until that limit, or until the
 * environment of the handler ends: then the call ends with code 1001 within 100 ms. `process.exit()` ends all calls
 * that wait at once, whatever its other listeners do. `process.reallyExit()`, which is the runtime's own and emits no
 * event, waits for them.
 *
 * Where a process has loaded several copies of one version of the package, they share the services, the captures and
 * the identity.
 *
 * @param handlers An object, or an instance of a class whose methods are handlers; they are called on it.
 * @throws {TypeError} An unknown operation (the message lists the known ones), or a handler that is not a function.
 * @throws {RangeError} A time limit that is out of range.
 * @throws {Error} `ERR_ZELK_SERVICE_IN_USE`: a log service of another thread is in force.
 */
export function logService(handlers?: Handlers, options?: LogServiceOptions): LogService;

/** The error that a handler throws to make the service answer with a code other than 0. */
export class ServiceError extends Error {
  /**
   * @param code An int32 other than 0.
   * @param answer The answer that goes with the code, of the operation's own type. Without it there is none.
   * @throws {TypeError} The code is not a number.
   * @throws {RangeError} The code is 0 or not an int32.
   */
  constructor(code: number, answer?: boolean | AnswerText | readonly AnswerText[]);
  readonly code: number;
  readonly answer?: boolean | AnswerText | readonly AnswerText[];
}

/** One line of the log. */
export interface LogLine {
  level: 'D' | 'I' | 'W' | 'E' | 'F';
  /** The full domain; a written line shows its low 20 bits. */
  domain: number;
  tag: string;
  /** With its arguments filled in. */
  message: string;
}

export interface LogCapture {
  /** Every line since the start, in the order of writing, up to the moment when this is read. */
  readonly lines: LogLine[];
  /** Ends the capture. `lines` stays, and is complete: `const { lines, stop } = captureLog()` can read it then. */
  stop(): void;
}

/**
 * Captures every line from now on, whatever the level in force and whichever thread logs it. Lines are still written as
 * before. Any number of captures may run at the same time. Each keeps every line, in memory, until it is stopped or its
 * environment ends: about 140 bytes for each line that has not been read yet, and more for those that have.
 */
export function captureLog(): LogCapture;

/**
 * Sets the identity of the process, in all threads. The last call wins. What a worker thread has set ends with that
 * thread; then the latest call of the remaining threads counts.
 *
 * @param caller Whether the process is a system application, or its full token id; null restores the environment's.
 * @throws {TypeError} `caller` is none of these.
 * @throws {RangeError} A token id that does not fit 64 bits.
 */
export function setCaller(caller: { readonly systemApplication: boolean } | bigint | null): void;

/** Why a call over D-Bus broke off. */
export interface BreakOff {
  /** In words, as the log has it. */
  text: string;
  /** The name of the D-Bus error with which the service answered. */
  error?: string;
  /** The types of an answer that had others than {@link expected}. */
  received?: string;
  expected?: string;
}

/** What a request came to. */
export interface Outcome<T> {
  /** The service's own code; or, with {@link why}, 1001 to 1004. */
  code: number;
  /** `undefined` where the operation has none, or the service gave none. */
  answer: T | undefined;
  /** Only where the call broke off. A service that itself answers such a code has none. */
  why?: BreakOff;
}

/** The arguments of each operation, and its answer. */
export interface Operations {
  GetModemLogConfig: [args: [keys: readonly string[]], answer: string[]];
  GetModemLogDirectPackConfig: [args: [], answer: string];
  GetModemLogLogMasks: [args: [], answer: string[]];
  GetModemLogStatus: [args: [], answer: boolean];
  HandleModemLogSwitch: [args: [on: boolean] | [on: boolean, configs: readonly string[]], answer: boolean];
  SendModemLogCommand: [args: [command: string], answer: boolean];
  ChangeModemLogConfig: [args: [configs: readonly string[]], answer: boolean];
  GetTcpdumpStatus: [args: [], answer: boolean];
  GetTcpdumpConfig: [args: [keys: readonly string[]], answer: string[]];
  ChangeTcpdumpConfig: [args: [configs: readonly string[]], answer: boolean];
  HandleTcpdumpSwitch: [args: [on: boolean] | [on: boolean, configs: readonly string[]], answer: boolean];
  HandleBluetoothCallPcmLogSwitch: [args: [on: boolean], answer: undefined];
  FetchRemoteDevicesLogs: [args: [request: string, value: bigint], answer: string];
  QueryRemoteDevicesLogs: [args: [request: string], answer: string];
  GetRemoteDevicesList: [args: [], answer: string];
  QueryProtocolData: [args: [request: string], answer: string];
}

/**
 * Asks the log service that is in force, without the module in between: what does it really answer? For authors of a
 * log service.
 *
 * The request runs on a worker thread and takes no longer than any call. Bytes of an answer that are not UTF-8 arrive
 * as U+FFFD. It is rejected with an `Error`, `code` `ERR_ZELK_NO_SERVICE`, when there is no log service; the message
 * says why.
 *
 * @throws {TypeError} An unknown operation, or a wrong number or type of arguments. Nothing is sent.
 * @throws {RangeError} A bigint that does not fit 64 bits with a sign.
 */
export function request<Name extends keyof Operations>(
  operation: Name, ...args: Operations[Name][0]): Promise<Outcome<Operations[Name][1]>>;
