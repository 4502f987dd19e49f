// Uses of the testing kit that its types allow, and after each mark one that they refuse.
import testing = require('zelklogservice/testing');

const service: testing.LogService = testing.logService({
  GetModemLogStatus: () => true,
  GetModemLogConfig: async (keys) => keys.map((key) => new TextEncoder().encode(key)),
  HandleModemLogSwitch: (on, configs = []) => on && configs.length > 0,
  SendModemLogCommand: () => Promise.reject(new testing.ServiceError(5, true)),
  HandleBluetoothCallPcmLogSwitch: () => {},
  FetchRemoteDevicesLogs: (request, value: bigint) => `${request} ${value}`,
  GetTcpdumpStatus: () => new Promise<never>(() => {}),
}, { timeout: 100 });
service.handle('GetModemLogStatus', undefined);
service.requests.length = 0;
export const names: (keyof testing.Handlers)[] = service.requests.map(({ operation }) => operation);
service[Symbol.dispose]();
const domains: number[] = testing.captureLog().lines.map(({ domain }) => domain);
testing.setCaller({ systemApplication: domains.length > 0 });
testing.setCaller(2n ** 32n);
testing.setCaller(null);
testing.request('HandleModemLogSwitch', true, ['text']).then(({ answer = false, why }) => !answer || why?.error);
testing.request('FetchRemoteDevicesLogs', 'text', 5n).then(({ code, answer }) => answer?.at(code)); // @ts-expect-error

testing.request('FetchRemoteDevicesLogs', 'text', 5); // @ts-expect-error
testing.request('GetModemLogStatus', true); // @ts-expect-error

testing.logService({ getModemLogStatus: () => true }); // @ts-expect-error
testing.logService({ GetModemLogStatus: () => 'on' }); // @ts-expect-error
testing.logService({ GetTcpdumpConfig: async () => 'text' }); // @ts-expect-error
testing.logService({ HandleBluetoothCallPcmLogSwitch: () => true }); // @ts-expect-error
service.handle('Reboot', () => true); // @ts-expect-error
service.requests = []; // @ts-expect-error
new testing.ServiceError('5'); // @ts-expect-error
testing.setCaller(5);
