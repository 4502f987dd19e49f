import zelk, { type ConfigAnswerValue, type ConfigItem } from 'zelklogservice';
import { ServiceError, captureLog, logService, setCaller, type LogService } from 'zelklogservice/testing';

// The application, which would have files of its own.

// What `call` answers by promise; within.mjs is for callbacks, too.
async function within<T>(milliseconds: number, name: string, call: () => Promise<T> | undefined): Promise<T> {
  const answer = call();
  if (answer === undefined) {
    throw new Error(`${name} was refused: the log says why`);
  }
  let timer: ReturnType<typeof setTimeout> | undefined;
  const limit = new Promise<never>((resolve, reject) => {
    timer = setTimeout(() => {
      reject(new Error(`${name} did not answer within ${milliseconds} ms`));
    }, milliseconds);
  });
  try {
    return await Promise.race([answer, limit]);
  } finally {
    clearTimeout(timer);
  }
}

// Has the modem log on with a ring buffer, and returns the buffer's settings.
async function record(megabytes: number, milliseconds = 1000): Promise<Record<string, ConfigAnswerValue>> {
  const items: ConfigItem[] = [{ configKey: 'ring', value: { megabytes } }];
  const isOn = await within(milliseconds, 'getModemLogStatus', () => zelk.getModemLogStatus());
  const isAccepted = isOn
    ? await within(milliseconds, 'changeModemLogConfig', () => zelk.changeModemLogConfig(items))
    : await within(milliseconds, 'handleModemLogSwitch', () => zelk.handleModemLogSwitch(true, items));
  if (!isAccepted) {
    throw new Error('the log service refused');
  }
  const entries = await within(milliseconds, 'getModemLogConfig', () => zelk.getModemLogConfig(['ring']));
  return entries[0]?.value ?? {};
}

// Its tests.

let service: LogService;
afterEach(() => {
  jest.restoreAllMocks();
  setCaller(null);
  service.restore();
});
test('answered: without handlers, by a reference service', async () => {
  service = logService();
  expect(await record(64)).toStrictEqual({ megabytes: 64 });
  expect(service.requests).toStrictEqual([
    { operation: 'GetModemLogStatus', args: [] },
    { operation: 'HandleModemLogSwitch', args: [true, ['{"configKey":"ring","value":{"megabytes":64}}']] },
    { operation: 'GetModemLogConfig', args: [['ring']] },
  ]);
});

test('refused', async () => {
  service = logService({ HandleModemLogSwitch: () => false });
  await expect(record(64)).rejects.toThrow('the log service refused');
});

test('failed: this promise is rejected with a boolean', async () => {
  service = logService({
    HandleModemLogSwitch: () => {
      throw new ServiceError(5);
    },
  });
  await expect(record(64)).rejects.toBe(false);
});

test('a broken reply: the call never settles, and the log says why', async () => {
  const log = captureLog();
  service = logService({ GetModemLogConfig: () => ['{"configKey":'] });
  await expect(record(64, 50)).rejects.toThrow('getModemLogConfig did not answer within 50 ms');
  log.stop();
  expect(log.lines).toContainEqual(
    expect.objectContaining({ level: 'E', message: expect.stringContaining('Failed to parse json') }));
});

test('no rights', async () => {
  service = logService();
  setCaller({ systemApplication: false });
  await expect(record(64)).rejects.toThrow('getModemLogStatus was refused');
  expect(service.requests).toStrictEqual([]);
});

test('a function that is replaced', async () => {
  service = logService();
  const status = jest.spyOn(zelk, 'getModemLogStatus').mockResolvedValue(true);
  expect(await record(32)).toStrictEqual({ megabytes: 32 });
  expect(status).toHaveBeenCalledTimes(1);
  expect(service.requests.map(({ operation }) => operation)).toStrictEqual(
    ['ChangeModemLogConfig', 'GetModemLogConfig']);
});
