// Why the gateway refused a request, in words that say what to do.
import { t } from "./text.js";

const SENTENCES = {
  0: "The gateway does not answer. Your changes are still here; try again.",
  401: "Your session has ended. Log in again.",
  403: "You may not do this.",
  404: "There is nothing at this place any more.",
  413: "That is more than the gateway takes at once.",
  423: "Somebody else is changing this just now. Try again.",
  503: "The gateway cannot store anything just now. Your changes are still here; try again later.",
};

// `answer` is what api.js gives.
export function reasonOf({ status, value, wait }) {
  if (status === 429) {
    return wait > 90
      ? t("Too many attempts. Wait {0} minutes.", Math.ceil(wait / 60))
      : t("Too many attempts. Wait {0} seconds.", Math.max(wait, 1));
  }
  if (SENTENCES[status]) {
    return t(SENTENCES[status]);
  }
  return (value && value.error) || t("The gateway refused this ({0}).", status);
}
