/**
 * Control of device-side diagnostic logging: the modem log, network packet capture (tcpdump), the Bluetooth call PCM
 * log, and the logs and protocol data of remote devices. Every answer comes from the system's log service.
 *
 * Terms used below:
 *
 * - **System application**: a process whose full token id has bit 32 set. The first twelve functions serve system
 *   applications only; the last four serve every caller.
 * - **Refused**: the reason is logged, nothing is thrown, no request is made, and the function returns `undefined`.
 *   This is why the promise forms of the first twelve may return `undefined`.
 * - **Failed**: the service answered with a code other than 0, or could not be reached. The code is not delivered.
 * - **Never settles**: the promise stays pending, or the callback is never called. Set your own time limit.
 *   `zelklogservice/testing` provides a log service that never answers, for tests; see docs/testing.md.
 *
 * A callback gets the answer as its only argument; there is no error argument. An exception that it throws is uncaught.
 * Unless an entry says otherwise, a function throws only what a getter of the caller's own objects throws, or when the
 * runtime itself fails. A getter that throws does not stop the call: it goes on with what could be read until then, a
 * callback still gets the answer, and the promise is lost with the exception. Without a callback a device then makes no
 * request.
 *
 * An array is read to its `length`, holes included, while JavaScript waits. There is no limit but the memory, of which
 * an item takes about 100 bytes, twice: look at the length of an array that comes from somebody else.
 */

/**
 * One parameter of a configuration item. On the way to the service
 *
 * - a number becomes an int32: the fraction is cut off, the low 32 bits are kept, NaN and infinities become 0;
 * - a string longer than 8194 bytes of UTF-8 becomes `""`, and any string ends at its first NUL; nothing is escaped;
 * - an array of strings arrives empty and without a comma after it, so the item's text is not JSON;
 * - an array must hold one type only, otherwise it is left out; an empty array is left out as well.
 */
export type ConfigValue = boolean | number | string | readonly boolean[] | readonly number[] | readonly string[];

/**
 * The parameters of an item by name, sent in the order of the object's own properties (on the desktop the enumerable
 * ones). A name ends at its first NUL, and one longer than 8194 bytes of UTF-8 counts as `""`: what is sent is the
 * property with that name, if there is one.
 */
export type ConfigParameters = Readonly<Record<string, ConfigValue>>;

/** One setting to be changed. */
export interface ConfigItem {
  /** The setting's name: 1 to 8194 bytes of UTF-8; anything else is sent as `""`. */
  readonly configKey: string;
  readonly value: ConfigParameters;
}

/** One command for the modem log, in the form of an item. */
export type ModemLogCommand = ConfigItem;

/** A stored parameter as a query returns it. Lists and nested objects are not returned. */
export type ConfigAnswerValue = boolean | number | string | null;

/** One answer to a configuration query. */
export interface ConfigEntry {
  /** Missing when the service's answer has no such string. */
  configKey?: string;
  /**
   * The members of the service's JSON text: names that look like integers first, then the others in ascending byte
   * order. Empty when the service gave no usable text. Without a prototype when the text says `"__proto__": null`.
   */
  value: Record<string, ConfigAnswerValue>;
}

/** One log mask. Each property is missing when the service's answer has no such string. */
export interface LogMask {
  configKey?: string;
  value?: string;
}

/** The error that the two functions that are not supported at present throw. */
export interface NotSupportedError extends Error {
  readonly code: '6';
}

/** Receives the answer, once, as its only argument. */
export type AnswerCallback<T> = (answer: T) => void;

// ---- Modem log ------------------------------------------------------------------------------------------------------

/**
 * Reads the modem log's configuration.
 *
 * - Rights: system application.
 * - Answer: one entry per text that the service's `GetModemLogConfig` returns, in the same order.
 * - Refused: more than two arguments; keys that are not an array.
 * - Throws: an Error with the runtime's own text, when called without arguments.
 * - Never settles: the request failed; `keys` is empty; the answer is empty; one of its texts is not JSON or is nested
 *   about 1,000 levels deep; a setting is an integer of up to 64 bits that fits neither int32 nor uint32. A larger
 *   integer arrives as a double; one inside a list or a nested object is left out.
 *
 * @param keys The settings to read. A key that is not a string of 1 to 8194 bytes is sent as `""`.
 */
export function getModemLogConfig(keys: readonly string[]): Promise<ConfigEntry[]> | undefined;
/**
 * Reads the modem log's configuration, see above; the callback gets the entries. It is never called where the promise
 * would never settle. A second argument that is not a function is ignored: the call answers by promise.
 */
export function getModemLogConfig(keys: readonly string[], callback: AnswerCallback<ConfigEntry[]>): undefined;

/**
 * Not supported at present: throws a {@link NotSupportedError} on every call. Use a callback to get the answer of the
 * service's `GetModemLogDirectPackConfig` request, which is made all the same. Without one the answer is lost with the
 * exception, and a device makes no request.
 *
 * - Rights: system application. Any other caller is refused and nothing is thrown: only then does it return.
 *
 * @throws {NotSupportedError} `GetModemLogDirectPackConfig current function not support in current time`
 */
export function getModemLogDirectPackConfig(): undefined;
/**
 * Throws a {@link NotSupportedError} on every call, see above, and later calls back with the direct-pack configuration,
 * a text up to its first NUL. Not called when the request failed. With more than one argument no callback is used.
 *
 * @throws {NotSupportedError}
 */
export function getModemLogDirectPackConfig(callback: AnswerCallback<string>): undefined;

/**
 * Not supported at present: throws a {@link NotSupportedError} on every call. Use a callback to get the answer of the
 * service's `GetModemLogLogMasks` request, which is made all the same. Without one the answer is lost with the
 * exception, and a device makes no request.
 *
 * - Rights: system application. Any other caller is refused and nothing is thrown: only then does it return.
 *
 * @throws {NotSupportedError} `GetModemLogLogMasks current function not support in current time`
 */
export function getModemLogLogMasks(): undefined;
/**
 * Throws a {@link NotSupportedError} on every call, see above, and later calls back with the log masks. Not called when
 * the request failed, the answer is empty, or one of its texts is not JSON or is nested about 1,000 levels deep. With
 * more than one argument no callback is used.
 *
 * @throws {NotSupportedError}
 */
export function getModemLogLogMasks(callback: AnswerCallback<LogMask[]>): undefined;

/**
 * Asks whether the modem log is on.
 *
 * - Rights: system application.
 * - Answer: the state, from the service's `GetModemLogStatus`.
 * - Failed: rejected with a boolean, not an Error: the state if the service gave one, otherwise `false`.
 * - Refused: more than one argument.
 */
export function getModemLogStatus(): Promise<boolean> | undefined;
/**
 * Asks whether the modem log is on, see above. The callback is also called after a failure and cannot distinguish it
 * from an answer. An argument that is not a function is ignored: the call answers by promise.
 */
export function getModemLogStatus(callback: AnswerCallback<boolean>): undefined;

/**
 * Turns the modem log on or off.
 *
 * - Rights: system application.
 * - Answer: the result of the service's `HandleModemLogSwitch`, `true` when it has switched.
 * - Failed: rejected with a boolean, not an Error: the result if the service gave one, otherwise `false`.
 * - Refused: more than three arguments.
 * - Throws: an Error with the runtime's own text, when called without arguments.
 *
 * @param on A state that is not a boolean means off.
 */
export function handleModemLogSwitch(on: boolean, configs?: undefined): Promise<boolean> | undefined;
/**
 * Turns the modem log on or off, see above, and applies `configs` with the switch; an empty list makes the
 * request without items. On the desktop the request with items is `HandleModemLogSwitchWithConfigs`.
 */
export function handleModemLogSwitch(on: boolean, configs: readonly ConfigItem[]): Promise<boolean> | undefined;
/**
 * Turns the modem log on or off, see above. The callback is also called after a failure and cannot distinguish it from
 * an answer. Its type is not checked: a second argument that is neither an array nor `undefined` is the callback, and
 * one that cannot be called ends in an uncaught exception.
 */
export function handleModemLogSwitch(on: boolean, callback: AnswerCallback<boolean>): undefined;
/**
 * Turns the modem log on or off and applies `configs`, see above. The callback comes second and the items third; in the
 * other order the array is taken for the callback.
 */
export function handleModemLogSwitch(
  on: boolean,
  callback: AnswerCallback<boolean>,
  configs: readonly ConfigItem[]
): undefined;

/**
 * Changes the modem log's configuration.
 *
 * - Rights: system application.
 * - Answer: the result of the service's `ChangeModemLogConfig`, `true` when it has applied the items.
 * - Failed: rejected with a boolean, not an Error: the result if the service gave one, otherwise `false`. An empty list
 *   fails too, without a request.
 * - Refused: a first argument that is not an array.
 * - Throws: an Error with the runtime's own text, when called without arguments.
 */
export function changeModemLogConfig(configs: readonly ConfigItem[]): Promise<boolean> | undefined;
/**
 * Changes the modem log's configuration, see above. The callback is also called after a failure and cannot distinguish
 * it from an answer. It is used only when it is a function and there are exactly two arguments; otherwise the call
 * answers by promise.
 */
export function changeModemLogConfig(configs: readonly ConfigItem[], callback: AnswerCallback<boolean>): undefined;

/**
 * Sends one command to the modem log.
 *
 * - Rights: system application.
 * - Answer: the result of the service's `SendModemLogCommand`.
 * - Refused: a command that is not an object.
 * - Throws: an Error with the runtime's own text, when called without arguments.
 * - Never settles: the request failed. That the service cannot be reached is logged; no other failure is.
 *
 * @param command Sent even when incomplete: without a usable `configKey` as `""`, without `value` with no parameters.
 */
export function sendModemLogCommand(command: ModemLogCommand): Promise<boolean> | undefined;
/**
 * Sends one command to the modem log, see above. The callback is not called when the request failed. The second of two
 * arguments is the callback, whatever its type, and one that cannot be called ends in an uncaught exception; with
 * three or more arguments the call answers by promise.
 */
export function sendModemLogCommand(command: ModemLogCommand, callback: AnswerCallback<boolean>): undefined;

// ---- Network packet capture -----------------------------------------------------------------------------------------

/**
 * Asks whether network packet capture is running.
 *
 * - Rights: system application.
 * - Answer: the state, from the service's `GetTcpdumpStatus`.
 * - Refused: more than one argument.
 * - Never settles: the request failed.
 */
export function getTcpdumpStatus(): Promise<boolean> | undefined;
/**
 * Asks whether network packet capture is running, see above. The callback is not called when the request failed. An
 * argument that is not a function is ignored: the call answers by promise.
 */
export function getTcpdumpStatus(callback: AnswerCallback<boolean>): undefined;

/**
 * Reads the configuration of packet capture.
 *
 * - Rights: system application.
 * - Answer: one entry per text that the service's `GetTcpdumpConfig` returns, in the same order.
 * - Refused: more than two arguments; keys that are not an array.
 * - Throws: an Error with the runtime's own text, when called without arguments.
 * - Never settles: the request failed; `keys` is empty; the answer is empty; one of its texts is not JSON or is nested
 *   about 1,000 levels deep; a setting is an integer of up to 64 bits that fits neither int32 nor uint32. A larger
 *   integer arrives as a double; one inside a list or a nested object is left out.
 *
 * @param keys The settings to read. A key that is not a string of 1 to 8194 bytes is sent as `""`.
 */
export function getTcpdumpConfig(keys: readonly string[]): Promise<ConfigEntry[]> | undefined;
/**
 * Reads the configuration of packet capture, see above; the callback gets the entries. It is never called where the
 * promise would never settle. A second argument that is not a function is ignored: the call answers by promise.
 */
export function getTcpdumpConfig(keys: readonly string[], callback: AnswerCallback<ConfigEntry[]>): undefined;

/**
 * Changes the configuration of packet capture.
 *
 * - Rights: system application.
 * - Answer: the result of the service's `ChangeTcpdumpConfig`, `true` when it has applied the items.
 * - Refused: a first argument that is not an array.
 * - Throws: an Error with the runtime's own text, when called without arguments.
 * - Never settles: the request failed; `configs` is empty. That the service cannot be reached is logged; no other
 *   failure is, nor an empty list.
 */
export function changeTcpdumpConfig(configs: readonly ConfigItem[]): Promise<boolean> | undefined;
/**
 * Changes the configuration of packet capture, see above. The callback is not called where the promise would never
 * settle. It is used only when it is a function and there are exactly two arguments; otherwise the call answers by
 * promise.
 */
export function changeTcpdumpConfig(configs: readonly ConfigItem[], callback: AnswerCallback<boolean>): undefined;

/**
 * Starts or stops packet capture.
 *
 * - Rights: system application.
 * - Answer: the result of the service's `HandleTcpdumpSwitch`, `true` when it has switched.
 * - Refused: more than three arguments.
 * - Throws: an Error with the runtime's own text, when called without arguments.
 * - Never settles: the request failed.
 *
 * @param on A state that is not a boolean means stop.
 */
export function handleTcpdumpSwitch(on: boolean, configs?: undefined): Promise<boolean> | undefined;
/**
 * Starts or stops packet capture, see above, and applies `configs` with the switch; an empty list makes the
 * request without items. On the desktop the request with items is `HandleTcpdumpSwitchWithConfigs`.
 */
export function handleTcpdumpSwitch(on: boolean, configs: readonly ConfigItem[]): Promise<boolean> | undefined;
/**
 * Starts or stops packet capture, see above. The callback is not called when the request failed. Its type is not
 * checked: a second argument that is neither an array nor `undefined` is the callback, and one that cannot be called
 * ends in an uncaught exception.
 */
export function handleTcpdumpSwitch(on: boolean, callback: AnswerCallback<boolean>): undefined;
/**
 * Starts or stops packet capture and applies `configs`, see above. The callback comes second and the items third; in
 * the other order the array is taken for the callback.
 */
export function handleTcpdumpSwitch(
  on: boolean,
  callback: AnswerCallback<boolean>,
  configs: readonly ConfigItem[]
): undefined;

// ---- Bluetooth call PCM log -----------------------------------------------------------------------------------------

/**
 * Turns the Bluetooth call PCM log on or off, with the service's `HandleBluetoothCallPcmLogSwitch`.
 *
 * - Rights: system application.
 * - Answer: **`false` on success**, because the service answers this switch with its code alone. A fulfilled promise
 *   means success.
 * - Refused: more than three arguments.
 * - Throws: an Error with the runtime's own text, when called without arguments.
 * - Never settles: the request failed.
 *
 * @param on A state that is not a boolean means off.
 */
export function handleBluetoothCallPcmLogSwitch(on: boolean, configs?: undefined): Promise<false> | undefined;
/** Turns the Bluetooth call PCM log on or off, see above. `configs` is read but not sent. */
export function handleBluetoothCallPcmLogSwitch(
  on: boolean,
  configs: readonly ConfigItem[]
): Promise<false> | undefined;
/**
 * Turns the Bluetooth call PCM log on or off, see above. The callback is not called when the request failed. Its type
 * is not checked: a second argument that is neither an array nor `undefined` is the callback, and one that cannot be
 * called ends in an uncaught exception.
 */
export function handleBluetoothCallPcmLogSwitch(on: boolean, callback: AnswerCallback<false>): undefined;
/**
 * Turns the Bluetooth call PCM log on or off, see above. The callback comes second; the items, third, are read but not
 * sent.
 */
export function handleBluetoothCallPcmLogSwitch(
  on: boolean,
  callback: AnswerCallback<false>,
  configs: readonly ConfigItem[]
): undefined;

// ---- Remote devices -------------------------------------------------------------------------------------------------

/**
 * Fetches the logs of remote devices.
 *
 * - Rights: none.
 * - Answer: the reply text of the service's `FetchRemoteDevicesLogs`, unchanged.
 * - Failed: rejected with a string, not an Error: the reply that came with the failure, `""` when there was none.
 * - Refused: not exactly two arguments.
 *
 * @param request A text in the service's own format, up to its first NUL. One longer than 8194 bytes of UTF-8, or
 * anything that is not a string, is sent as `""`.
 * @param value A number that the service defines. Sent as an int64: the fraction is cut off, a number out of range
 * becomes the nearest in range, NaN, infinities and anything that is not a number become 0.
 */
export function fetchRemoteDevicesLogs(request: string, value: number): Promise<string>;

/**
 * Queries the logs of remote devices.
 *
 * - Rights: none.
 * - Answer: the reply text of the service's `QueryRemoteDevicesLogs`, unchanged.
 * - Failed: rejected with a string, not an Error: the reply that came with the failure, `""` when there was none.
 * - Refused: not exactly one argument.
 *
 * @param request As for {@link fetchRemoteDevicesLogs}.
 */
export function queryRemoteDevicesLogs(request: string): Promise<string>;

/**
 * Lists the remote devices. Arguments are ignored, so no call is refused.
 *
 * - Rights: none.
 * - Answer: the reply text of the service's `GetRemoteDevicesList`, unchanged.
 * - Failed: rejected with a string, not an Error: the reply that came with the failure, `""` when there was none.
 */
export function getRemoteDevicesList(): Promise<string>;

/**
 * Sends a request for protocol data. The request and the reply are logged in full.
 *
 * - Rights: none.
 * - Answer: the reply text of the service's `QueryProtocolData`, unchanged.
 * - Failed: rejected with a string, not an Error: the reply that came with the failure, `""` when there was none.
 * - Refused: not exactly one argument.
 *
 * @param request As for {@link fetchRemoteDevicesLogs}.
 */
export function queryProtocolData(request: string): Promise<string>;
