// A caller that is cut off: does what its argument says on the Mac that SIMULATED_MAC names.
import { Mac } from "driver-client";

const [what, driver, lock] = process.argv.slice(2);
const mac = new Mac({ driver });
if (what === "click") {
  const click = mac.app("Notes").click(340, 574);
  console.log("begun");
  await click;
} else {
  const service = await mac.startCaptureService(lock);
  const session = await service.open("Notes");
  await session.hold();
  const awake = mac.keepAwake();
  await awake.line();
  await mac.watchInput().line();
  await mac.lockGuard().line();
  console.log("begun");
  await new Promise(() => setInterval(() => undefined, 1000));
}
